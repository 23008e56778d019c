#pragma once

#include <cstring>

namespace vyn {

constexpr unsigned long notFound = ~0UL;

/// The index of the first or last `unit` in the `length` units of `text`, or `notFound`.
unsigned long findUnit(unsigned short const* text, unsigned long length, unsigned short unit) noexcept;
unsigned long findLastUnit(unsigned short const* text, unsigned long length, unsigned short unit) noexcept;

/// Where the first or last occurrence of the `patternLength` units of `pattern`, one or more, starts in `text`, or
/// `notFound`. All units are compared, zero units like others. Takes time linear in both lengths, whatever they hold,
/// and no memory.
unsigned long findUnits(unsigned short const* text, unsigned long length, unsigned short const* pattern,
                        unsigned long patternLength) noexcept;
unsigned long findLastUnits(unsigned short const* text, unsigned long length, unsigned short const* pattern,
                            unsigned long patternLength) noexcept;

/// Units that `equalBlocks` looks at: a vector or two, so that texts which differ early are not looked at in vain.
constexpr unsigned long blockUnits = 16;

/// Whether the next `blockUnits` units of both texts are equal, and none is zero.
inline bool equalBlocks(unsigned short const* a, unsigned short const* b) noexcept {
    unsigned short zero = 0;
    for (unsigned long i = 0; i < blockUnits; ++i)
        zero = static_cast<unsigned short>(zero | (a[i] == 0));
    return zero == 0 && std::memcmp(a, b, blockUnits * sizeof *a) == 0;
}

} // namespace vyn
