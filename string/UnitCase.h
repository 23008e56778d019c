#pragma once

#include <vynulib/VynUChar.h>

namespace vyn {

constexpr unsigned short asciiCaseBit = 0x20;
constexpr unsigned short lastAscii = 0x7F; // no table is asked for units up to it

constexpr bool isBetween(unsigned short unit, char first, char last) {
    return unit >= static_cast<unsigned char>(first) && unit <= static_cast<unsigned char>(last);
}

constexpr unsigned short asciiUpper(unsigned short unit) {
    return isBetween(unit, 'a', 'z') ? static_cast<unsigned short>(unit - asciiCaseBit) : unit;
}

constexpr unsigned short asciiLower(unsigned short unit) {
    return isBetween(unit, 'A', 'Z') ? static_cast<unsigned short>(unit + asciiCaseBit) : unit;
}

inline unsigned short mapped(VynUCharTable& table, unsigned short unit) {
    unsigned short const value = table.getValue(unit);
    return value == 0 ? unit : value;
}

/// The case of one unit. Loads the table where the unit needs one, which throws `std::bad_alloc`.
inline unsigned short upper(unsigned short unit) {
    return unit <= lastAscii ? asciiUpper(unit) : mapped(VynUChar::m_gUpperCaseTable, unit);
}

inline unsigned short lower(unsigned short unit) {
    return unit <= lastAscii ? asciiLower(unit) : mapped(VynUChar::m_gLowerCaseTable, unit);
}

} // namespace vyn
