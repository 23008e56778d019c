#include "string/UnitSearch.h"

#include "converters/kernels/Kernels.h"

#include <algorithm>

namespace vyn {
namespace {

// The units of a text in the order of a search, so that each search is written once for both directions.
struct Forward {
    unsigned short const* first;
    unsigned short operator[](unsigned long i) const { return first[i]; }
    Forward from(unsigned long i) const { return {first + i}; }

    // The first of `count` positions at which both ends of a pattern stand, or `count`.
    unsigned long findEnds(unsigned long count, Forward pattern, unsigned long distance) const {
        return kernels.firstEnds(first, count, {pattern[0], pattern[1], pattern[distance], distance});
    }
};
struct Backward {
    unsigned short const* last;
    unsigned short operator[](unsigned long i) const { return *(last - i); }
    Backward from(unsigned long i) const { return {last - i}; }

    unsigned long findEnds(unsigned long count, Backward pattern, unsigned long distance) const {
        unsigned long const at = kernels.lastEnds(last - (distance + count) + 1, count,
                                                  {pattern[distance], pattern[distance - 1], pattern[0], distance});
        return at == count ? count : count - 1 - at;
    }
};

// Where the greatest suffix of a pattern starts, in the order of the units or in its reverse, and that suffix's period.
struct Suffix {
    unsigned long start;
    unsigned long period;
};

template <class Units, class Less>
Suffix maximalSuffix(Units pattern, unsigned long length, Less less) {
    Suffix best = {0, 1};
    unsigned long candidate = 1;
    for (unsigned long same = 0; candidate + same < length;) {
        unsigned short const a = pattern[candidate + same], b = pattern[best.start + same];
        if (less(a, b)) {
            candidate += same + 1;
            same = 0;
            best.period = candidate - best.start;
        } else if (a == b) {
            if (++same == best.period) {
                candidate += same;
                same = 0;
            }
        } else {
            best = {candidate++, 1};
            same = 0;
        }
    }
    return best;
}

// The two-way algorithm of Crochemore and Perrin: splits the pattern at a critical position, compares what is right of
// it first and what is left of it last. A mismatch on the right at its k-th unit moves on by k, one on the left by the
// period; `known` units at the start of a periodic pattern are not compared again.
template <class Units>
unsigned long findTwoWay(Units text, unsigned long length, Units pattern, unsigned long patternLength) {
    Suffix const up = maximalSuffix(pattern, patternLength, [](unsigned a, unsigned b) { return a < b; });
    Suffix const down = maximalSuffix(pattern, patternLength, [](unsigned a, unsigned b) { return a > b; });
    Suffix const split = up.start > down.start ? up : down;

    auto const repeats = [&](unsigned long i) { return pattern[i] == pattern[i + split.period]; };
    unsigned long checked = 0;
    while (checked < split.start && checked + split.period < patternLength && repeats(checked))
        ++checked;
    bool const periodic = checked == split.start;
    unsigned long const period = periodic ? split.period : std::max(split.start, patternLength - split.start) + 1;

    unsigned long known = 0;
    for (unsigned long at = 0; at + patternLength <= length;) {
        unsigned long right = std::max(split.start, known);
        while (right < patternLength && pattern[right] == text[at + right])
            ++right;
        if (right < patternLength) {
            at += right - split.start + 1;
            known = 0;
            continue;
        }
        unsigned long left = split.start;
        while (left > known && pattern[left - 1] == text[at + left - 1])
            --left;
        if (left <= known)
            return at;
        at += period;
        known = periodic ? patternLength - period : 0;
    }
    return notFound;
}

// When trying candidates has cost too much, in units compared. A candidate ends a block of the filter early, which
// is charged as eight units. The two-way search compares each unit at most twice, so that more than that is worth a
// change; but it reads the whole pattern first, which a few bad candidates at the start of a text are not worth.
constexpr unsigned long costOfCandidate = 8;
constexpr unsigned long costPerUnit = 2;
constexpr unsigned long costToBegin = 1024;

// Tries the positions where both ends of the pattern, of two units or more, fit, and changes over to the two-way search
// where comparing the rest there has cost too much for the distance covered.
template <class Units>
unsigned long findMany(Units text, unsigned long length, Units pattern, unsigned long patternLength) {
    if (patternLength > length)
        return notFound;
    unsigned long const end = length - patternLength + 1;
    unsigned long const lastIndex = patternLength - 1;
    auto const candidateFrom = [=](unsigned long at) {
        return at + text.from(at).findEnds(end - at, pattern, lastIndex);
    };

    unsigned long cost = 0;
    for (unsigned long at = candidateFrom(0); at < end; at = candidateFrom(at + 1)) {
        unsigned long same = 1;
        while (same < lastIndex && pattern[same] == text[at + same])
            ++same;
        if (same >= lastIndex)
            return at;
        cost += costOfCandidate + same;
        if (cost > costToBegin + costPerUnit * at) {
            unsigned long const rest = at + 1;
            unsigned long const found = findTwoWay(text.from(rest), length - rest, pattern, patternLength);
            return found == notFound ? notFound : rest + found;
        }
    }
    return notFound;
}

} // namespace

unsigned long findUnit(unsigned short const* text, unsigned long length, unsigned short unit) noexcept {
    unsigned long const at = kernels.firstUnit(text, length, unit);
    return at == length ? notFound : at;
}

unsigned long findLastUnit(unsigned short const* text, unsigned long length, unsigned short unit) noexcept {
    unsigned long const at = kernels.lastUnit(text, length, unit);
    return at == length ? notFound : at;
}

unsigned long findUnits(unsigned short const* text, unsigned long length, unsigned short const* pattern,
                        unsigned long patternLength) noexcept {
    if (patternLength == 1)
        return findUnit(text, length, *pattern);
    return findMany(Forward{text}, length, Forward{pattern}, patternLength);
}

unsigned long findLastUnits(unsigned short const* text, unsigned long length, unsigned short const* pattern,
                            unsigned long patternLength) noexcept {
    if (patternLength == 1)
        return findLastUnit(text, length, *pattern);
    unsigned long const at =
        findMany(Backward{text + length - 1}, length, Backward{pattern + patternLength - 1}, patternLength);
    return at == notFound ? notFound : length - patternLength - at;
}

} // namespace vyn
