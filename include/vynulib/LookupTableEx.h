#pragma once

#include <vynulib/VynExport.h>

/// As `LookupTable`, under Unicode scalar values up to U+10FFFF: 256 page slots for each of the 17 planes.
/// Instantiated in the library for `unsigned short`.
template <class T>
class VYNULIB_API LookupTableEx {
public:
    LookupTableEx() noexcept; ///< A table without values.
    LookupTableEx(LookupTableEx const&) = delete;
    LookupTableEx& operator=(LookupTableEx const&) = delete;
    ~LookupTableEx();

    /// The value stored under `key`, 0 if there is none. A key above U+10FFFF never has one.
    T lookup(unsigned int key) const noexcept { return key <= maxKey ? m_pPages[key >> 8][key & 0xFF] : T(0); }

    /// Stores `value` under `key`, in place of any value before; does nothing for a key above U+10FFFF.
    /// Throws `std::bad_alloc`.
    void insert(unsigned int key, T value);

    /// The page of zeros behind every empty slot.
    static T const m_gNullTable[256];

private:
    static constexpr unsigned int maxKey = 0x10FFFF;
    static constexpr unsigned pageCount = (maxKey >> 8) + 1;

    T const* m_pPages[pageCount]; // the null page, or a page that this table owns
};

/// @cond
template <>
VYNULIB_API unsigned short const LookupTableEx<unsigned short>::m_gNullTable[256];

extern template class LookupTableEx<unsigned short>;
/// @endcond
