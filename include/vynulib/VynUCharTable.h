#pragma once

#include <vynulib/LookupTable.h>
#include <vynulib/VynLazy.h>

/// A property of the 65,536 UTF-16 units, given as a list of ranges and unfolded into a lookup table at its first use.
/// Any number of threads may look up, and load, at once.
class VYNULIB_API VynUCharTable {
public:
    /// `ranges` holds records of three values: first unit, last unit (inclusive), value. A record whose first unit is 0
    /// ends the list, and one whose last unit lies before its first is empty. Where ranges overlap, the later one wins.
    /// With `counting`, unit `u` of a range has the value `value + (u - first)`, else all its units have `value`.
    /// The list is not copied: it must outlive the table.
    constexpr VynUCharTable(unsigned short const* ranges, bool counting) noexcept
        : m_pRanges(ranges), m_bCounting(counting) {}
    VynUCharTable(VynUCharTable const&) = delete;
    VynUCharTable& operator=(VynUCharTable const&) = delete;
    ~VynUCharTable();

    /// The value of `unit`, 0 where no range holds it. Loads the table first if it is not; that throws
    /// `std::bad_alloc`.
    unsigned short getValue(unsigned short unit) {
        LookupTable<unsigned short> const* const table = m_table.get();
        return (table ? *table : loaded()).lookup(unit);
    }

    /// Unfolds the ranges, the first time that it is called. Throws `std::bad_alloc`, which changes nothing.
    void load() { loaded(); }

private:
    LookupTable<unsigned short> const& loaded();

    vyn::Lazy<LookupTable<unsigned short>> m_table;
    unsigned short const* m_pRanges;
    bool m_bCounting;
};
