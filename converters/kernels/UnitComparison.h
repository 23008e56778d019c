#pragma once

#include "converters/kernels/UnitCase.h"

namespace vyn {
namespace {

/// Where a comparison ends: at a difference or a zero unit.
struct EndTest {
    unsigned short const *a, *b;

    Units vectorAt(unsigned long i) const {
        Units const vector = units(loadOnce(a + i));
        return vector & units(vector == loadUnits(b + i));
    }
    bool at(unsigned long i) const { return a[i] != b[i] || a[i] == 0; }
};

[[gnu::flatten]] inline unsigned long sameUnits(unsigned short const* a, unsigned short const* b, unsigned long count) {
    return firstPosition(count, EndTest{a, b});
}

/// Where it ends if the case of ASCII letters does not count.
struct AsciiEndTest {
    unsigned short const *a, *b;

    Units vectorAt(unsigned long i) const {
        Units const left = withAsciiChanged(loadUnits(a + i), asciiSmall);
        Units const right = withAsciiChanged(loadUnits(b + i), asciiSmall);
        return left & units(left == right);
    }
    bool at(unsigned long i) const {
        return withAsciiChanged(a[i], asciiSmall) != withAsciiChanged(b[i], asciiSmall) || a[i] == 0;
    }
};

/// Where it ends if what `map` makes of the units is compared.
struct MappedEndTest {
    unsigned short const *a, *b;
    CaseMap const& map;

    /// Whether that is not in the vectors at `i`, seen without a branch for each unit.
    bool isNowhereInVector(unsigned long i) const {
        unsigned short differences = 0;
        for (unsigned long j = i; j < i + vectorUnits; ++j)
            differences = static_cast<unsigned short>(differences | (map.of[a[j]] ^ map.of[b[j]]));
        return differences == 0 && isZero(units(loadUnits(a + i) == 0));
    }
    bool at(unsigned long i) const { return map.of[a[i]] != map.of[b[i]] || a[i] == 0; }
};

[[gnu::flatten]] inline unsigned long sameUnitsNoCase(unsigned short const* a, unsigned short const* b,
                                                      unsigned long count, CaseMap const* map) {
    AsciiEndTest const asciiTest = {a, b};
    if (!map)
        return firstPosition(count, asciiTest);
    MappedEndTest const mappedTest = {a, b, *map};
    unsigned long i = 0;
    for (; count - i >= vectorUnits; i += vectorUnits)
        if (zerosOf(asciiTest.vectorAt(i)) != 0 && !mappedTest.isNowhereInVector(i))
            break;
    while (i < count && !mappedTest.at(i))
        ++i;
    return i;
}

} // namespace
} // namespace vyn
