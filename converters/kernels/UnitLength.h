#pragma once

#include "converters/kernels/Blocks.h"

namespace vyn {
namespace {

/// Zero units of the block at `at`, a bit for each.
inline std::uint32_t zeroUnitsOf(unsigned short const* at) {
    UnitBlock block;
    loadBlock(block, at);
    return bitsOf(block, [](Units vector) { return units(vector == 0); });
}

inline bool hasZeroUnit(unsigned short const* at) {
    UnitBlock block;
    loadBlock(block, at);
    Units zeros = {};
    for (Units const vector : block)
        zeros |= units(vector == 0);
    return !isZero(zeros);
}

/// The units before the first zero unit of `text`, at most `maxUnits`. Reads aligned blocks, which may hold what lies before
/// the text and after its end: where one unit of a block is readable, all are.
[[gnu::flatten]] inline unsigned long unitLength(unsigned short const* text, unsigned long maxUnits) {
    auto const address = reinterpret_cast<std::uintptr_t>(text);
    unsigned long const before = address % blockBytes / sizeof *text;
    unsigned long length = 0; // known so far
    std::uint32_t zeros = zeroUnitsOf(text - before) >> before;
    if (zeros == 0) {
        length = blockUnits - before;
        while (length < maxUnits && !hasZeroUnit(text + length))
            length += blockUnits;
        if (length >= maxUnits)
            return maxUnits;
        zeros = zeroUnitsOf(text + length);
    }
    length += static_cast<unsigned>(__builtin_ctz(zeros));
    return length < maxUnits ? length : maxUnits;
}

} // namespace
} // namespace vyn
