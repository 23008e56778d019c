#pragma once

#include <cstdint>

namespace vyn {

/// The text form of a UTF-16 unit: "U+" and four upper-case hexadecimal digits.
constexpr unsigned unitEscapeLength = 6;

/// The six characters in one value, the last one in the lowest eight bits.
constexpr std::uint64_t unitEscapeCode(unsigned unit) {
    std::uint64_t code = 'U' << 8 | '+';
    for (unsigned shift = 16; shift != 0; shift -= 4)
        code = code << 8 | static_cast<unsigned char>("0123456789ABCDEF"[unit >> (shift - 4) & 0xF]);
    return code;
}

/// Writes the six characters, an element each; returns where they end.
template <class Element>
Element* writeUnitEscape(Element* dst, unsigned unit) {
    std::uint64_t const code = unitEscapeCode(unit);
    for (unsigned i = 0; i < unitEscapeLength; ++i)
        *dst++ = static_cast<unsigned char>(code >> 8 * (unitEscapeLength - 1 - i));
    return dst;
}

/// The unit that the escape at the start of `text` stands for, or -1 if there is none. Lower-case digits are not
/// accepted, as the writer writes none.
template <class Text>
int readUnitEscape(Text const& text) {
    if (text[0] != 'U' || !text.has(1) || text[1] != '+')
        return -1;
    int value = 0;
    for (unsigned i = 2; i < unitEscapeLength; ++i) {
        unsigned const element = text.has(i) ? text[i] : 0U;
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
