#pragma once

#include <cstddef>

namespace vyn {

/// The text form of a UTF-16 unit: "U+" and four upper-case hexadecimal digits.
constexpr std::size_t unitEscapeLength = 6;

inline void writeUnitEscape(unsigned char* dst, unsigned short unit) {
    constexpr char digits[] = "0123456789ABCDEF";
    dst[0] = 'U';
    dst[1] = '+';
    for (unsigned i = 0; i < 4; ++i)
        dst[2 + i] = static_cast<unsigned char>(digits[(unit >> (12 - 4 * i)) & 0xF]);
}

/// The unit that the escape at `text` stands for, or -1 if there is none. Looks at an element only when all before it
/// fit, so it never reads past a terminator. Lower-case digits are not accepted, as the writer writes none.
template <class Element>
int readUnitEscape(Element const* text) {
    if (text[0] != 'U' || text[1] != '+')
        return -1;
    int value = 0;
    for (std::size_t i = 2; i < unitEscapeLength; ++i) {
        unsigned const element = text[i];
        if (element >= '0' && element <= '9')
            value = value * 16 + static_cast<int>(element - '0');
        else if (element >= 'A' && element <= 'F')
            value = value * 16 + static_cast<int>(element - 'A' + 10);
        else
            return -1;
    }
    return value;
}

} // namespace vyn
