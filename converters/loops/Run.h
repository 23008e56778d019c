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

/// Characters that are converted one by one after an irregular one before the bulk form is tried again: irregular
/// characters often follow each other, and a bulk form that comes nowhere costs as much as a few of them.
constexpr unsigned charactersBetweenRuns = 16;

} // namespace vyn
