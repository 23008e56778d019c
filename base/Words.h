#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

// Several bytes or units of text in one word, for kernels that need no vectors.

namespace vyn {

static_assert(std::endian::native == std::endian::little, "a word holds the first byte or unit in its lowest bits");

/// A 1 in each of the four units of a word: times a unit, that unit in all of them.
constexpr std::uint64_t inEachUnit = 0x0001000100010001;

/// The word at `index` of the text at `src`, which need not be aligned.
inline std::uint64_t wordAt(void const* src, unsigned long index = 0) {
    std::uint64_t value;
    std::memcpy(&value, static_cast<unsigned char const*>(src) + index * sizeof value, sizeof value);
    return value;
}

/// Marks the zero units of a word; above the first one it may mark others too.
constexpr std::uint64_t zeroUnits(std::uint64_t word) {
    return (word - inEachUnit) & ~word & 0x8000 * inEachUnit;
}
constexpr bool hasZeroUnit(std::uint64_t word) {
    return zeroUnits(word) != 0;
}
/// Where the first zero unit of a word stands, from 0.
constexpr unsigned firstZeroUnit(std::uint64_t word) {
    return static_cast<unsigned>(std::countr_zero(zeroUnits(word))) / 16;
}

} // namespace vyn
