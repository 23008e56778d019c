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

/// How many elements at the start of `text` belong to an escape, or to what may become one: all six are an escape.
/// Lower-case digits are not accepted, as the writer writes none.
template <class Text>
unsigned unitEscapePrefix(Text const& text) {
    auto const fits = [](unsigned element, unsigned i) {
        if (i < 2)
            return element == (i == 0 ? 'U' : '+');
        return (element >= '0' && element <= '9') || (element >= 'A' && element <= 'F');
    };
    unsigned length = 0;
    while (length < unitEscapeLength && (length == 0 || text.has(length)) && fits(text[length], length))
        ++length;
    return length;
}

/// The unit that the escape at the start of `text` stands for, or -1 if there is none.
template <class Text>
int readUnitEscape(Text const& text) {
    if (unitEscapePrefix(text) < unitEscapeLength)
        return -1;
    int value = 0;
    for (unsigned i = 2; i < unitEscapeLength; ++i) {
        int const digit = text[i];
        value = value * 16 + (digit <= '9' ? digit - '0' : digit - 'A' + 10);
    }
    return value;
}

} // namespace vyn
