#include "converters/kernels/PortableUnits.h"

#include <cstring>

namespace vyn {
namespace {

constexpr unsigned long blockUnits = 32;

/// The first of `count` positions at which `matches` is 1, not 0, or `count`.
template <class Matches>
unsigned long firstMatch(unsigned long count, Matches matches) {
    unsigned long i = 0;
    for (; count - i >= blockUnits; i += blockUnits) {
        unsigned short any = 0; // as wide as a unit, so that compilers use vectors
        for (unsigned long j = 0; j < blockUnits; ++j)
            any = static_cast<unsigned short>(any | matches(i + j));
        if (any != 0)
            break;
    }
    while (i < count && matches(i) == 0)
        ++i;
    return i;
}

/// The last one, or `count`.
template <class Matches>
unsigned long lastMatch(unsigned long count, Matches matches) {
    unsigned long const last = count - 1;
    unsigned long const fromLast = firstMatch(count, [=](unsigned long i) { return matches(last - i); });
    return fromLast == count ? count : last - fromLast;
}

auto isUnit(unsigned short const* text, unsigned short unit) {
    return [=](unsigned long i) { return static_cast<unsigned short>(text[i] == unit); };
}

auto areEnds(unsigned short const* text, PatternEnds ends) {
    return [=](unsigned long i) {
        unsigned short const differs =
            (text[i] ^ ends.first) | (text[i + 1] ^ ends.second) | (text[i + ends.distance] ^ ends.last);
        return static_cast<unsigned short>(differs == 0);
    };
}

/// Goes on from block to block that are equal and hold no zero unit, then from unit to unit up to one that `ends` it.
template <class Ends>
unsigned long sameLength(unsigned short const* a, unsigned short const* b, unsigned long count, Ends ends) {
    auto const isEnd = [=](unsigned long i) { return ends(a[i], b[i]) || a[i] == 0; };
    unsigned long i = 0;
    for (; count - i >= blockUnits; i += blockUnits) {
        unsigned short zero = 0;
        for (unsigned long j = i; j < i + blockUnits; ++j)
            zero = static_cast<unsigned short>(zero | (a[j] == 0));
        if (zero == 0 && std::memcmp(a + i, b + i, blockUnits * sizeof *a) == 0)
            continue;
        for (unsigned long j = i; j < i + blockUnits; ++j)
            if (isEnd(j))
                return j;
    }
    while (i < count && !isEnd(i))
        ++i;
    return i;
}

/// Whether a unit changed.
template <class Map>
bool mapUnits(unsigned short* text, unsigned long count, Map map) {
    unsigned short changes = 0;
    for (unsigned long i = 0; i < count; ++i) {
        unsigned short const unit = map(text[i]);
        changes = static_cast<unsigned short>(changes | (text[i] ^ unit));
        text[i] = unit;
    }
    return changes != 0;
}

constexpr unsigned short withAsciiChanged(unsigned short unit, AsciiLetters changed) {
    bool const changes = static_cast<unsigned short>(unit - changed) < asciiLetterCount;
    return static_cast<unsigned short>(unit ^ (changes ? asciiCaseBit : 0));
}

} // namespace

unsigned long firstUnitByBlocks(unsigned short const* text, unsigned long count, unsigned short unit) {
    return firstMatch(count, isUnit(text, unit));
}

unsigned long lastUnitByBlocks(unsigned short const* text, unsigned long count, unsigned short unit) {
    return lastMatch(count, isUnit(text, unit));
}

unsigned long firstEndsByBlocks(unsigned short const* text, unsigned long count, PatternEnds ends) {
    return firstMatch(count, areEnds(text, ends));
}

unsigned long lastEndsByBlocks(unsigned short const* text, unsigned long count, PatternEnds ends) {
    return lastMatch(count, areEnds(text, ends));
}

unsigned long sameUnitsByBlocks(unsigned short const* a, unsigned short const* b, unsigned long count) {
    return sameLength(a, b, count, [](unsigned short left, unsigned short right) { return left != right; });
}

unsigned long sameUnitsNoCaseByBlocks(unsigned short const* a, unsigned short const* b, unsigned long count,
                                      CaseMap const* map) {
    if (!map)
        return sameLength(a, b, count, [](unsigned short left, unsigned short right) {
            return withAsciiChanged(left, asciiSmall) != withAsciiChanged(right, asciiSmall);
        });
    return sameLength(a, b, count,
                      [map](unsigned short left, unsigned short right) { return map->of[left] != map->of[right]; });
}

bool changeAsciiCaseByUnits(unsigned short* text, unsigned long count, AsciiLetters changed) {
    return mapUnits(text, count, [changed](unsigned short unit) { return withAsciiChanged(unit, changed); });
}

bool changeCaseByUnits(unsigned short* text, unsigned long count, CaseMap const& map) {
    return mapUnits(text, count, [&map](unsigned short unit) { return map.of[unit]; });
}

} // namespace vyn
