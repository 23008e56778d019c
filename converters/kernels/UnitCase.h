#pragma once

#include "converters/kernels/CaseMap.h"
#include "converters/kernels/UnitPositions.h"

namespace vyn {
namespace {

inline bool isAscii(Units vector) {
    return isZero(vector & 0xFF80);
}

/// The unit, or each of a vector, with the case of an ASCII letter changed.
inline Units withAsciiChanged(Units vector, AsciiLetters changed) {
    unsigned short const first = changed;
    return vector ^ (units(vector - first < asciiLetterCount) & asciiCaseBit);
}
inline unsigned short withAsciiChanged(unsigned short unit, AsciiLetters changed) {
    bool const changes = static_cast<unsigned short>(unit - changed) < asciiLetterCount;
    return static_cast<unsigned short>(unit ^ (changes ? asciiCaseBit : 0));
}

/// Whether any of `count` units changed.
inline bool changeUnits(unsigned short* text, unsigned long count, CaseMap const& map) {
    unsigned short changes = 0;
    for (unsigned long i = 0; i < count; ++i) {
        unsigned short const unit = map.of[text[i]];
        changes = static_cast<unsigned short>(changes | (text[i] ^ unit));
        text[i] = unit;
    }
    return changes != 0;
}

[[gnu::flatten]] inline bool changeAsciiCase(unsigned short* text, unsigned long count, AsciiLetters changed) {
    Units changes = {};
    unsigned long i = 0;
    for (; count - i >= vectorUnits; i += vectorUnits) {
        Units const before = loadUnits(text + i), after = withAsciiChanged(before, changed);
        changes |= before ^ after;
        store(text + i, after);
    }
    unsigned short rest = 0;
    for (; i < count; ++i) {
        unsigned short const unit = withAsciiChanged(text[i], changed);
        rest = static_cast<unsigned short>(rest | (text[i] ^ unit));
        text[i] = unit;
    }
    return !isZero(changes) || rest != 0;
}

/// ASCII by vectors, other units by look-ups, which in vectors would take as long.
[[gnu::flatten]] inline bool changeCase(unsigned short* text, unsigned long count, CaseMap const& map) {
    Units changes = {};
    bool othersChanged = false;
    unsigned long i = 0;
    for (; count - i >= vectorUnits; i += vectorUnits) {
        Units const before = loadUnits(text + i);
        if (isAscii(before)) {
            Units const after = withAsciiChanged(before, map.changed);
            changes |= before ^ after;
            store(text + i, after);
        } else {
            othersChanged |= changeUnits(text + i, vectorUnits, map);
        }
    }
    othersChanged |= changeUnits(text + i, count - i, map);
    return !isZero(changes) || othersChanged;
}

} // namespace
} // namespace vyn
