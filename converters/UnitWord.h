#pragma once

#include <bit>
#include <cstdint>

// Four UTF-16 units in one word, in the order of memory.

namespace vyn {

/// By how many bits the unit at `index` is shifted in the word.
constexpr unsigned unitShift(unsigned index) {
    return 16 * (std::endian::native == std::endian::little ? index : 3 - index);
}

constexpr bool hasZeroUnit(std::uint64_t word) {
    constexpr std::uint64_t ones = 0x0001000100010001;
    return ((word - ones) & ~word & (ones << 15)) != 0;
}

} // namespace vyn
