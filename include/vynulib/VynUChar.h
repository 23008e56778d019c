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
    static constexpr unsigned int UTF32_MAX = 0x10FFFF;
    static constexpr unsigned int UTF16_MAX = 0xFFFF;

    /// The character of a surrogate pair; U+0000 if the units are not a high and a low surrogate in this order.
    VynUChar(unsigned short high, unsigned short low) noexcept;
    VynUChar(VynUChar const&) = default;
    VynUChar& operator=(VynUChar const&) = default;

    /// The class bits of a UTF-16 unit.
    static unsigned short getCharClass(unsigned short unit);

    /// The class bits of this character.
    unsigned short getCharClass() const;

    bool isDigit() const;
    bool isLetter() const;
    bool isPunctuation() const;
    bool isWhiteSpace() const;

    /// Whether no character is assigned to this code point.
    bool isNonChar() const;

    /// The simple upper-case and lower-case mapping of a unit, 0 for a unit that has none.
    static VynUCharTable &m_gUpperCaseTable, &m_gLowerCaseTable;

    /// The class bits as listed: `getCharClass` adds to them the ideographs, the syllables and the surrogates.
    static VynUCharTable& m_gCharClassTable;

private:
    unsigned int m_nCodePoint;
};
