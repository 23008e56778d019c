#pragma once

#include "converters/kernels/Blocks.h"

// Where in a text something stands. A `Test` gives by `vectorAt(i)` a vector with zero at those of the positions from `i` on
// at which it does, and other values elsewhere; by `at(i)` it tells whether it stands at this one.

namespace vyn {
namespace {

inline Units loadUnits(unsigned short const* at) {
    return units(load(at));
}

/// Two bits for each zero unit.
inline std::uint64_t zerosOf(Units vector) {
    Bytes const isZeroUnit[] = {bytes(vector == 0)};
    return signsOf(isZeroUnit);
}
inline unsigned long firstOf(std::uint64_t zeros) {
    return static_cast<unsigned>(__builtin_ctzll(zeros)) / 2;
}
inline unsigned long lastOf(std::uint64_t zeros) {
    return (63 - static_cast<unsigned>(__builtin_clzll(zeros))) / 2;
}

inline Units lowerOf(Units a, Units b) {
    return a < b ? a : b;
}

/// Positions that take one branch together.
inline constexpr unsigned long stride = 4 * vectorUnits;

template <class Test>
bool isInStride(Test const& test, unsigned long i) {
    Units lowest = test.vectorAt(i);
    for (unsigned long j = vectorUnits; j < stride; j += vectorUnits)
        lowest = lowerOf(lowest, test.vectorAt(i + j));
    return !isZero(units(lowest == 0));
}

/// The first of `count` positions, or `count`.
template <class Test>
unsigned long firstPosition(unsigned long count, Test const& test) {
    unsigned long i = 0;
    while (count - i >= stride && !isInStride(test, i))
        i += stride;
    for (; count - i >= vectorUnits; i += vectorUnits)
        if (std::uint64_t const zeros = zerosOf(test.vectorAt(i)))
            return i + firstOf(zeros);
    if (i < count && count >= vectorUnits) { // at nothing of this before `i`
        i = count - vectorUnits;
        std::uint64_t const zeros = zerosOf(test.vectorAt(i));
        return zeros != 0 ? i + firstOf(zeros) : count;
    }
    while (i < count && !test.at(i))
        ++i;
    return i;
}

/// The last of `count` positions, or `count`.
template <class Test>
unsigned long lastPosition(unsigned long count, Test const& test) {
    unsigned long end = count;
    while (end >= stride && !isInStride(test, end - stride))
        end -= stride;
    for (; end >= vectorUnits; end -= vectorUnits)
        if (std::uint64_t const zeros = zerosOf(test.vectorAt(end - vectorUnits)))
            return end - vectorUnits + lastOf(zeros);
    if (end > 0 && count >= vectorUnits) { // at nothing of this from `end` on
        std::uint64_t const zeros = zerosOf(test.vectorAt(0));
        return zeros != 0 ? lastOf(zeros) : count;
    }
    while (end > 0)
        if (test.at(--end))
            return end;
    return count;
}

} // namespace
} // namespace vyn
