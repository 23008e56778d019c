#pragma once

#include "base/CheckedReads.h"
#include "base/UnitScan.h"
#include "converters/loops/Text.h"

#include <vynulib/VynCharSetConverter.h>

#include <algorithm>
#include <cstring>

namespace vyn {

inline unsigned long lengthWithin(unsigned char const* text, unsigned long most) {
    return strnlen(reinterpret_cast<char const*>(text), most);
}
inline unsigned long lengthWithin(unsigned short const* text, unsigned long most) {
    return unitLength(text, most);
}

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
        if (at >= m_end)
            m_end = at + lengthWithin(at, std::min(most, m_stops ? readableFrom(at) : longest));
        return std::min(static_cast<unsigned long>(m_end - at), most);
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

/// Regular characters that follow each other before a text counts as regular again after one that could not be converted.
constexpr unsigned regularAgain = 16;

/// How far a bulk form made of single steps goes between two looks for a run of ASCII.
constexpr long elementsBetweenAscii = 64;

} // namespace vyn
