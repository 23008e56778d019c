#include <vynulib/VynUChar.h>

#include "base/LoadedObject.h"
#include "base/Surrogates.h"
#include "tables/Tables.h"

namespace {

enum ClassBit : unsigned short {
    whiteSpaceBit = 0x0001,
    digitBit = 0x0002,
    letterBit = 0x0004,
    punctuationBit = 0x0010,
    eastAsianBit = 0x0400,
    surrogateBit = 0x1000,
};

struct UnitRange {
    unsigned short first;
    unsigned short last;
};

// The large blocks of one class, which would only fill pages of the table.
constexpr UnitRange eastAsianLetters[] = {
    {0x2E80, 0x2E99}, // CJK radicals
    {0x2E9B, 0x2EF3}, // CJK radicals
    {0x2F00, 0x2FD5}, // Kangxi radicals
    {0x3400, 0x4DB5}, // CJK ideographs, extension A
    {0x4E00, 0x9FA5}, // CJK ideographs
    {0xA000, 0xA48C}, // Yi syllables
    {0xAC00, 0xD7A3}, // Hangul syllables
    {0xF900, 0xFA2D}, // CJK compatibility ideographs
};

bool isEastAsianLetter(unsigned short unit) {
    if (unit < eastAsianLetters[0].first)
        return false;
    for (UnitRange const& range : eastAsianLetters)
        if (unit >= range.first && unit <= range.last)
            return true;
    return false;
}

struct CharTables {
    VynUCharTable upperCase{toUpperTable, true};
    VynUCharTable lowerCase{toLowerTable, true};
    VynUCharTable charClass{classTable, false};
};

constinit vyn::LoadedObject<CharTables> charTables;

[[gnu::destructor]] void unload() {
    if (!vyn::processIsEnding())
        charTables.destroy();
}

} // namespace

constinit VynUCharTable& VynUChar::m_gUpperCaseTable = charTables.object.upperCase;
constinit VynUCharTable& VynUChar::m_gLowerCaseTable = charTables.object.lowerCase;
constinit VynUCharTable& VynUChar::m_gCharClassTable = charTables.object.charClass;

VynUChar::VynUChar(unsigned short high, unsigned short low) noexcept
    : m_nCodePoint(vyn::isHighSurrogate(high) && vyn::isLowSurrogate(low) ? vyn::combineSurrogates(high, low) : 0) {}

unsigned short VynUChar::getCharClass(unsigned short unit) {
    if (isEastAsianLetter(unit))
        return eastAsianBit | letterBit;
    if (vyn::isHighSurrogate(unit) || vyn::isLowSurrogate(unit))
        return surrogateBit;
    return m_gCharClassTable.getValue(unit);
}

unsigned short VynUChar::getCharClass() const {
    if (m_nCodePoint > UTF16_MAX)
        return surrogateBit;
    return getCharClass(static_cast<unsigned short>(m_nCodePoint));
}

// The class of a character beyond the Basic Multilingual Plane has none of these bits, and is not 0.
bool VynUChar::isDigit() const {
    return (getCharClass() & digitBit) != 0;
}

bool VynUChar::isLetter() const {
    return (getCharClass() & letterBit) != 0;
}

bool VynUChar::isPunctuation() const {
    return (getCharClass() & punctuationBit) != 0;
}

bool VynUChar::isWhiteSpace() const {
    return (getCharClass() & whiteSpaceBit) != 0;
}

bool VynUChar::isNonChar() const {
    return getCharClass() == 0;
}
