#pragma once

#include <vynulib/VynUChar.h>

namespace vyn {

constexpr unsigned short lastAscii = 0x7F; // no table is asked for units up to it

/// The upper case of one unit. Loads the table where the unit needs it, which throws `std::bad_alloc`.
inline unsigned short upper(unsigned short unit) {
    if (unit <= lastAscii)
        return unit >= 'a' && unit <= 'z' ? static_cast<unsigned short>(unit - 'a' + 'A') : unit;
    unsigned short const value = VynUChar::m_gUpperCaseTable.getValue(unit);
    return value == 0 ? unit : value;
}

} // namespace vyn
