#pragma once

#include <vynulib/VynExport.h>

/// A sparse table of values under 16-bit keys: 256 pages of 256 values, each page made when its first value is stored.
/// The value 0 means that a key has none. All empty slots share one page of zeros, so a lookup is two array reads.
/// Instantiated in the library for `unsigned char`, `unsigned short` and `unsigned int`.
/// Lookups may run on any number of threads, but not beside an insertion.
template <class T>
class VYNULIB_API LookupTable {
public:
    LookupTable() noexcept; ///< A table without values.
    LookupTable(LookupTable const&) = delete;
    LookupTable& operator=(LookupTable const&) = delete;
    ~LookupTable();

    /// The value stored under `key`, 0 if there is none.
    T lookup(unsigned short key) const noexcept { return m_pPages[key >> 8][key & 0xFF]; }

    /// Stores `value` under `key`, in place of any value before. Throws `std::bad_alloc`.
    void insert(unsigned short key, T value);

    /// The page of zeros behind every empty slot.
    static T const m_gNullTable[256];

private:
    static constexpr unsigned pageCount = 256;

    T const* m_pPages[pageCount]; // the null page, or a page that this table owns
};

/// @cond
template <>
VYNULIB_API unsigned char const LookupTable<unsigned char>::m_gNullTable[256];
template <>
VYNULIB_API unsigned short const LookupTable<unsigned short>::m_gNullTable[256];
template <>
VYNULIB_API unsigned int const LookupTable<unsigned int>::m_gNullTable[256];

extern template class LookupTable<unsigned char>;
extern template class LookupTable<unsigned short>;
extern template class LookupTable<unsigned int>;
/// @endcond
