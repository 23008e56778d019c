#pragma once

#include <vynulib/VynUCharTable.h>

/// A Unicode character and what is known of it: its classes and the case of UTF-16 units, as of Unicode 3.0, for the
/// Basic Multilingual Plane. All characters beyond it share one class.
///
/// A class is a set of bits; 0 means that no character is assigned:
///
/// | Bit    | Meaning                                  | Bit    | Meaning                                           |
/// |--------|------------------------------------------|--------|---------------------------------------------------|
/// | 0x0001 | white space                              | 0x0080 | lower case                                        |
/// | 0x0002 | digit (decimal, other or letter number)  | 0x0100 | title case                                        |
/// | 0x0004 | letter                                   | 0x0200 | modifier letter                                   |
/// | 0x0008 | combining mark                           | 0x0400 | East Asian                                        |
/// | 0x0010 | punctuation                              | 0x1000 | surrogate, or beyond the Basic Multilingual Plane |
/// | 0x0020 | right-to-left                            | 0x4000 | half-width form                                   |
/// | 0x0040 | upper case                               | 0x8000 | full-width form                                   |
///
/// The tables are built at their first use, which throws `std::bad_alloc` where memory runs out. Any number of threads
/// may ask at once.
class VYNULIB_API VynUChar {
public:
    static constexpr unsigned int UTF32_MAX = 0x10FFFF; ///< The last code point.
    static constexpr unsigned int UTF16_MAX = 0xFFFF;   ///< The last code point of one unit.

    /// The character of a surrogate pair; U+0000 if the units are not a high and a low surrogate in this order.
    VynUChar(unsigned short high, unsigned short low) noexcept;
    VynUChar(VynUChar const&) = default;            ///< The same character.
    VynUChar& operator=(VynUChar const&) = default; ///< The same character.

    /// The class bits of a UTF-16 unit, 0x1000 for a surrogate.
    static unsigned short getCharClass(unsigned short unit);

    /// The class bits of this character, 0x1000 for all beyond U+FFFF.
    unsigned short getCharClass() const;

    bool isDigit() const;       ///< Whether its class has the bit 0x0002: decimal, other and letter numbers.
    bool isLetter() const;      ///< Whether its class has the bit 0x0004: no character beyond U+FFFF.
    bool isPunctuation() const; ///< Whether its class has the bit 0x0010.
    bool isWhiteSpace() const;  ///< Whether its class has the bit 0x0001.

    /// Whether no character is assigned to this code point, as of Unicode 3.0. False for all beyond U+FFFF.
    bool isNonChar() const;

    static VynUCharTable& m_gUpperCaseTable; ///< The simple upper-case mapping of a unit, 0 for one that has none.
    static VynUCharTable& m_gLowerCaseTable; ///< The simple lower-case mapping of a unit, 0 for one that has none.

    /// The class bits as listed: `getCharClass` adds to them the ideographs, the syllables and the surrogates.
    static VynUCharTable& m_gCharClassTable;

private:
    unsigned int m_nCodePoint;
};
