#pragma once

#include "base/CheckedReads.h"
#include "converters/kernels/TextScan.h"
#include "converters/loops/Text.h"

#include <vynulib/VynCharSetConverter.h>

#include <algorithm>

namespace vyn {

constexpr unsigned long longestCharacter = 4; ///< In elements, of those that bulk forms take.

/// The stretch ahead of a read position that is known to hold no terminator. It stays known across irregular
/// characters, so that each element is scanned once.
///
/// A text need not be terminated where the room ends it or, with `ILLCHAR_STOP`, its first character that can't be
/// converted. So a scan goes no further than the output can reach, and with `ILLCHAR_STOP` no further than what can be
/// read anyway.
template <class Element>
class Run {
public:
    Run(Element const* start, ILLCHAR_OPTYPE op) : m_end(start), m_stops(op == ILLCHAR_STOP) {}

    /// Elements from `at` on before any terminator, at most `most`, which the room is enough for.
    unsigned long ahead(Element const* at, unsigned long most) {
        constexpr unsigned long longest =
            4096 / sizeof(Element); // stays in the first-level cache until it is converted
        auto known = static_cast<unsigned long>(std::max(m_end - at, 0L));
        // What the last scan cut off may be a character, which is read on if it can't end the text.
        bool const isCutOff = known < longestCharacter && known < most && !m_stops;
        if (known == 0 || isCutOff) {
            known += lengthWithin(at + known, std::min(most - known, m_stops ? readableFrom(at) : longest));
            m_end = at + known;
        }
        return std::min(known, most);
    }

private:
    Element const* m_end;
    bool m_stops;
};

/// How many characters are converted one by one between two runs. Irregular characters often follow each other, and a bulk
/// form that comes nowhere costs as much as a few of them: the less it came to, the more they are.
class Turns {
public:
    /// After a run of so many elements.
    unsigned charactersAfter(long elements) {
        m_characters = elements >= fewest ? fewest : std::min(2 * m_characters, most);
        return m_characters;
    }

private:
    static constexpr unsigned fewest = 16, most = 128;

    unsigned m_characters = fewest;
};

/// Whether so many units are worth the call of a kernel. Of ASCII the forms without vectors take as much at a time.
inline bool areWorthKernel(unsigned short const* units, unsigned long count) {
    return count >= shortestForKernel || (count >= shortestForKernel / 2 && *units >= 0x80);
}

/// Whether a bulk form ended with the stretch that it was given, which was long, but for a character cut off by its end.
inline bool tookLongRun(long taken, unsigned long ahead) {
    return taken >= 64 && ahead - static_cast<unsigned long>(taken) < longestCharacter;
}

/// Regular characters that follow each other before a text counts as regular again after one that could not be converted.
constexpr unsigned regularAgain = 16;

/// Characters after which a bulk form is tried again in any case: it may take what the literal path calls irregular.
constexpr unsigned roughAtMost = 256;

/// How far a bulk form made of single steps goes between two looks for a run of ASCII.
constexpr long elementsBetweenAscii = 64;

} // namespace vyn
