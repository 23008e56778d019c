#include "tests/differential/KnownDifferences.h"

#include "base/Surrogates.h"

#include <algorithm>

std::uint32_t codeNumber(std::string const& code) {
    std::uint32_t number = 0;
    for (char const byte : code)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

namespace {

bool isPrivateUse(Text const& text) {
    return text && text->size() == 1 && (*text)[0] >= 0xE000 && (*text)[0] < 0xF900;
}

constexpr auto onlyOurs = [](Difference const& d) { return d.ours && !d.theirs; };
constexpr auto onlyTheirs = [](Difference const& d) { return !d.ours && d.theirs; };
constexpr auto otherCharacter = [](Difference const& d) { return d.ours && d.theirs; };
constexpr auto theirPrivateUse = [](Difference const& d) { return !d.ours && isPrivateUse(d.theirs); };

bool ourIllFormed(Difference const& d) {
    return onlyOurs(d) &&
           std::ranges::count_if(*d.ours, vyn::isHighSurrogate) != std::ranges::count_if(*d.ours, vyn::isLowSurrogate);
}

// ICU decodes several codes to one character or encodes several characters to one code; the library has only the
// pairs that lead there and back.
bool oneWayInIcu(Difference const& d) {
    return d.theirs && (d.icu.decode(d.code) != d.theirs || (!d.ours && d.icu.encode(*d.theirs) != d.code));
}

bool encodesOnly(Difference const& d) {
    unsigned const trail = codeNumber(d.code) & 0xFF;
    return d.code.size() == 2 && trail >= 0x80 && trail <= 0xA0 && onlyTheirs(d) &&
           d.library.encode(*d.theirs) == d.code;
}

bool trailBitUntested(Difference const& d) {
    std::string highTrail = d.code;
    highTrail.back() = static_cast<char>(highTrail.back() | '\x80');
    return highTrail != d.code && onlyOurs(d) && d.library.decode(highTrail) == d.ours;
}

} // namespace

// The converters that have the very table that a set is made from, where there is one.
// clang-format off
std::vector<ComparedSet> const comparedSets = {
    {VYNCS_WCP874, "ibm-874_P100-1995"}, {VYNCS_WCP932, "ibm-942_P12A-1999"}, {VYNCS_WCP936, "windows-936-2000"},
    {VYNCS_WCP949, "windows-949-2000"}, {VYNCS_WCP950, "ibm-950_P110-1999"}, {VYNCS_UTF16, "UTF-16LE"},
    {VYNCS_UTF16ESC, nullptr}, {VYNCS_WCP1250, "ibm-5346_P100-1998"}, {VYNCS_WCP1251, "ibm-5347_P100-1998"},
    {VYNCS_WCP1252, "ibm-5348_P100-1997"}, {VYNCS_WCP1253, "ibm-5349_P100-1998"}, {VYNCS_WCP1254, "ibm-5350_P100-1998"},
    {VYNCS_WCP1255, "ibm-9447_P100-2002"}, {VYNCS_WCP1256, "ibm-9448_X100-2005"}, {VYNCS_WCP1257, "ibm-9449_P100-2002"},
    {VYNCS_WCP1258, "ibm-5354_P100-1998"}, {VYNCS_UTF32, "UTF-32LE"}, {VYNCS_KOI8R, "ibm-878_P100-1996"},
    {VYNCS_ISO_8859_1, "ISO-8859-1"}, {VYNCS_ISO_8859_2, "ibm-912_P100-1995"}, {VYNCS_ISO_8859_3, "ibm-913_P100-2000"},
    {VYNCS_ISO_8859_4, "ibm-914_P100-1995"}, {VYNCS_ISO_8859_5, "ibm-915_P100-1995"},
    {VYNCS_ISO_8859_6, "ibm-1089_P100-1995"}, {VYNCS_ISO_8859_7, "ibm-9005_X110-2007"},
    {VYNCS_ISO_8859_8, "ibm-5012_P100-1999"}, {VYNCS_ISO_8859_9, "ibm-920_P100-1995"},
    {VYNCS_ISO_8859_10, "iso-8859_10-1998"}, {VYNCS_ISO_8859_11, "iso-8859_11-2001"},
    {VYNCS_ISO_8859_13, "ibm-921_P100-1995"}, {VYNCS_ISO_8859_14, "iso-8859_14-1998"},
    {VYNCS_ISO_8859_15, "ibm-923_P100-1998"}, {VYNCS_ISO_8859_16, nullptr}, {VYNCS_SHIFTJIS, "ibm-943_P15A-2003"},
    {VYNCS_SJIS0213, nullptr}, {VYNCS_BIG5, "windows-950-2000"}, {VYNCS_EUC_JP, "ibm-954_P101-2007"},
    {VYNCS_EUC_CN, "ibm-1383_P110-1999"}, {VYNCS_EUC_KR, "ibm-970_P110_P110-2006_U2"}, {VYNCS_GB18030, "gb18030"},
    {VYNCS_UTF8, "UTF-8"},
};

std::vector<KnownDifference> const knownDifferences = {
    // Lone surrogates, values above U+10FFFF and four-byte overlong forms.
    {"ill-formed values pass through", {VYNCS_UTF8, VYNCS_UTF16, VYNCS_UTF32}, ourIllFormed},
    {"overlong forms are decoded", {VYNCS_UTF8}, onlyOurs, {{0xC080, 0xC1BF}, {0xE08080, 0xE09FBF}}},

    {"there are no C1 controls and no DEL", {VYNCS_EUC_JP, VYNCS_EUC_KR, VYNCS_EUC_CN}, onlyTheirs, {{0x7F, 0x9F}}},

    {"ICU maps one way only",
     {VYNCS_WCP874, VYNCS_WCP932, VYNCS_WCP950, VYNCS_SHIFTJIS, VYNCS_BIG5, VYNCS_EUC_JP}, oneWayInIcu},

    {"no user-defined codes", {VYNCS_EUC_JP, VYNCS_EUC_CN, VYNCS_EUC_KR}, theirPrivateUse},

    {"JIS X 0212 is empty", {VYNCS_EUC_JP}, onlyTheirs, {{0x8FA1A1, 0x8FFEFE}}},
    {"the high bit of a trail byte is not tested", {VYNCS_EUC_JP}, trailBitUntested},
    {"yen sign and overline follow a lead byte 80", {VYNCS_EUC_JP}, onlyOurs, {{0x80DC}, {0x80FE}}},
    {"A1C0 is the plain backslash", {VYNCS_EUC_JP}, otherCharacter, {{0xA1C0}}},
    // Bar, cent, pound and not signs.
    {"as in JIS X 0208", {VYNCS_EUC_JP}, otherCharacter, {{0xA1BD}, {0xA1F1, 0xA1F2}, {0xA2CC}}},
    {"single-shift codes end with the katakana", {VYNCS_EUC_JP}, onlyTheirs, {{0x8EE0, 0x8EE4}}},

    {"trail bytes 80 to A0 are encoded but not decoded", {VYNCS_WCP936, VYNCS_WCP950}, encodesOnly},
    {"row FE is empty", {VYNCS_EUC_CN}, onlyTheirs, {{0xFEE0, 0xFEFE}}},
    {"A3A7 is the full-width apostrophe", {VYNCS_EUC_CN}, otherCharacter, {{0xA3A7}}},
    {"U+1E3F as in the first edition", {VYNCS_GB18030}, otherCharacter, {{0xA8BC}, {0x8135F437}}},
};
