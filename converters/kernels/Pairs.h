#pragma once

#include "converters/kernels/Blocks.h"

namespace vyn {
namespace {

inline Units isSurrogate(Units vector) {
    return units((vector & 0xF800) == 0xD800);
}

inline bool hasSurrogates(UnitBlock const& block) {
    Units found = {};
    for (Units const vector : block)
        found |= isSurrogate(vector);
    return !isZero(found);
}

/// The units of whole characters in a block that begins with one: all, but for the first half of a pair at its end.
/// Negative where a surrogate is without its other half.
inline long lengthOfPairs(UnitBlock const& block) {
    std::uint32_t const high = bitsOf(block, [](Units vector) { return units((vector & 0xFC00) == 0xD800); });
    std::uint32_t const low = bitsOf(block, [](Units vector) { return units((vector & 0xFC00) == 0xDC00); });
    return low == high << 1 ? blockUnits - static_cast<long>(high >> (blockUnits - 1)) : -1;
}

} // namespace
} // namespace vyn
