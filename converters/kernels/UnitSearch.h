#pragma once

#include "converters/kernels/Kernels.h"
#include "converters/kernels/UnitPositions.h"

namespace vyn {
namespace {

/// Where a unit stands.
struct UnitTest {
    unsigned short const* text;
    unsigned short unit;

    Units vectorAt(unsigned long i) const { return loadUnits(text + i) ^ unit; }
    bool at(unsigned long i) const { return text[i] == unit; }
};

/// Where both ends of a pattern stand.
struct EndsTest {
    unsigned short const* text;
    PatternEnds ends;

    Units vectorAt(unsigned long i) const {
        return (loadUnits(text + i) ^ ends.first) | (loadUnits(text + i + 1) ^ ends.second) |
               (loadUnits(text + i + ends.distance) ^ ends.last);
    }
    bool at(unsigned long i) const {
        return text[i] == ends.first && text[i + 1] == ends.second && text[i + ends.distance] == ends.last;
    }
};

[[gnu::flatten]] inline unsigned long firstUnit(unsigned short const* text, unsigned long count, unsigned short unit) {
    return firstPosition(count, UnitTest{text, unit});
}

[[gnu::flatten]] inline unsigned long lastUnit(unsigned short const* text, unsigned long count, unsigned short unit) {
    return lastPosition(count, UnitTest{text, unit});
}

[[gnu::flatten]] inline unsigned long firstEnds(unsigned short const* text, unsigned long count, PatternEnds ends) {
    return firstPosition(count, EndsTest{text, ends});
}

[[gnu::flatten]] inline unsigned long lastEnds(unsigned short const* text, unsigned long count, PatternEnds ends) {
    return lastPosition(count, EndsTest{text, ends});
}

} // namespace
} // namespace vyn
