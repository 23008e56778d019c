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
constexpr auto ourPrivateUse = [](Difference const& d) { return isPrivateUse(d.ours); };
constexpr auto theirPrivateUse = [](Difference const& d) { return !d.ours && isPrivateUse(d.theirs); };

// The byte stands for the character of its own value.
bool ourControl(Difference const& d) {
    return onlyOurs(d) && *d.ours == std::u16string(1, static_cast<char16_t>(codeNumber(d.code)));
}

bool ourIllFormed(Difference const& d) {
    return onlyOurs(d) &&
           std::ranges::count_if(*d.ours, vyn::isHighSurrogate) != std::ranges::count_if(*d.ours, vyn::isLowSurrogate);
}

// The peer decodes several codes to one character or encodes several characters to one code; the library has only the
// pairs that lead there and back.
bool oneWayInPeer(Difference const& d) {
    return d.theirs && (d.peer.decode(d.code) != d.theirs || (!d.ours && d.peer.encode(*d.theirs) != d.code));
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

// Where ICU has the very table that a set is made from, its row proves the conversion, and glibc's row the table.
// clang-format off
std::vector<ComparedSet> const comparedSets = {
    {VYNCS_WCP874, "ibm-874_P100-1995", "CP874"}, {VYNCS_WCP932, "ibm-942_P12A-1999", "IBM932"},
    {VYNCS_WCP936, "windows-936-2000", "CP936"}, {VYNCS_WCP949, "windows-949-2000", "UHC"},
    {VYNCS_WCP950, "ibm-950_P110-1999", "CP950"}, {VYNCS_UTF16, "UTF-16LE", "UTF-16LE"},
    {VYNCS_UTF16ESC, nullptr, nullptr}, {VYNCS_WCP1250, "ibm-5346_P100-1998", "CP1250"},
    {VYNCS_WCP1251, "ibm-5347_P100-1998", "CP1251"}, {VYNCS_WCP1252, "ibm-5348_P100-1997", "CP1252"},
    {VYNCS_WCP1253, "ibm-5349_P100-1998", "CP1253"}, {VYNCS_WCP1254, "ibm-5350_P100-1998", "CP1254"},
    {VYNCS_WCP1255, "ibm-9447_P100-2002", "CP1255"}, {VYNCS_WCP1256, "ibm-9448_X100-2005", "CP1256"},
    {VYNCS_WCP1257, "ibm-9449_P100-2002", "CP1257"}, {VYNCS_WCP1258, "ibm-5354_P100-1998", "CP1258"},
    {VYNCS_UTF32, "UTF-32LE", "UTF-32LE"}, {VYNCS_KOI8R, "ibm-878_P100-1996", "KOI8-R"},
    {VYNCS_ISO_8859_1, "ISO-8859-1", "ISO-8859-1"}, {VYNCS_ISO_8859_2, "ibm-912_P100-1995", "ISO-8859-2"},
    {VYNCS_ISO_8859_3, "ibm-913_P100-2000", "ISO-8859-3"}, {VYNCS_ISO_8859_4, "ibm-914_P100-1995", "ISO-8859-4"},
    {VYNCS_ISO_8859_5, "ibm-915_P100-1995", "ISO-8859-5"}, {VYNCS_ISO_8859_6, "ibm-1089_P100-1995", "ISO-8859-6"},
    {VYNCS_ISO_8859_7, "ibm-9005_X110-2007", "ISO-8859-7"}, {VYNCS_ISO_8859_8, "ibm-5012_P100-1999", "ISO-8859-8"},
    {VYNCS_ISO_8859_9, "ibm-920_P100-1995", "ISO-8859-9"}, {VYNCS_ISO_8859_10, "iso-8859_10-1998", "ISO-8859-10"},
    {VYNCS_ISO_8859_11, "iso-8859_11-2001", "ISO-8859-11"}, {VYNCS_ISO_8859_13, "ibm-921_P100-1995", "ISO-8859-13"},
    {VYNCS_ISO_8859_14, "iso-8859_14-1998", "ISO-8859-14"}, {VYNCS_ISO_8859_15, "ibm-923_P100-1998", "ISO-8859-15"},
    {VYNCS_ISO_8859_16, nullptr, "ISO-8859-16"}, {VYNCS_SHIFTJIS, "ibm-943_P15A-2003", "CP932"},
    {VYNCS_SJIS0213, nullptr, "SHIFT_JISX0213"}, {VYNCS_BIG5, "windows-950-2000", "BIG5"},
    {VYNCS_EUC_JP, "ibm-954_P101-2007", "EUC-JP"}, {VYNCS_EUC_CN, "ibm-1383_P110-1999", "EUC-CN"},
    {VYNCS_EUC_KR, "ibm-970_P110_P110-2006_U2", "EUC-KR"}, {VYNCS_GB18030, "gb18030", "GB18030"},
    {VYNCS_UTF8, "UTF-8", "UTF-8"},
};

std::vector<KnownDifference> const knownDifferences = {
    // Lone surrogates, values above U+10FFFF and four-byte overlong forms.
    {"ill-formed values pass through", bothPeers, {VYNCS_UTF8, VYNCS_UTF16, VYNCS_UTF32}, ourIllFormed},
    {"overlong forms are decoded", bothPeers, {VYNCS_UTF8}, onlyOurs, {{0xC080, 0xC1BF}, {0xE08080, 0xE09FBF}}},

    {"undefined bytes are the C1 controls of their value", glibc,
     {VYNCS_WCP1250, VYNCS_WCP1251, VYNCS_WCP1252, VYNCS_WCP1253, VYNCS_WCP1254, VYNCS_WCP1255, VYNCS_WCP1257,
      VYNCS_WCP1258, VYNCS_WCP949}, ourControl, {{0x80, 0x9F}}},
    {"there are no C1 controls and no DEL", bothPeers, {VYNCS_EUC_JP, VYNCS_EUC_KR}, onlyTheirs, {{0x7F, 0x9F}}},
    {"there are no C1 controls and no DEL", icu, {VYNCS_EUC_CN}, onlyTheirs, {{0x7F, 0x9F}}},
    {"there is no DEL", glibc, {VYNCS_EUC_CN}, onlyTheirs, {{0x7F}}},
    {"0x80 is undefined", glibc, {VYNCS_WCP950}, onlyTheirs, {{0x80}}},
    {"rotated", glibc, {VYNCS_WCP874, VYNCS_SHIFTJIS, VYNCS_WCP950}, otherCharacter, {{0x1A}, {0x1C}, {0x7F}}},
    {"0xAA is U+00AA", glibc, {VYNCS_WCP1253}, onlyOurs, {{0xAA}}},
    {"no punctuation below A1", glibc, {VYNCS_WCP874}, onlyTheirs, {{0x80}, {0x85}, {0x91, 0x97}, {0xA0}}},
    {"the last four bytes are signs and a space", glibc, {VYNCS_WCP874}, onlyOurs, {{0xFC, 0xFF}}},
    {"cent, pound and not signs are single bytes", glibc, {VYNCS_WCP932}, onlyOurs, {{0x80}, {0xA0}, {0xFD}}},
    {"glibc joins a letter and its mark", glibc, {VYNCS_WCP1255, VYNCS_WCP1258}, otherCharacter, {{0x100, 0xFFFFFF}}},

    {"ICU maps one way only", icu,
     {VYNCS_WCP874, VYNCS_WCP932, VYNCS_WCP950, VYNCS_SHIFTJIS, VYNCS_BIG5, VYNCS_EUC_JP}, oneWayInPeer},
    {"glibc maps one way only", glibc,
     {VYNCS_WCP932, VYNCS_WCP950, VYNCS_WCP1258, VYNCS_SHIFTJIS, VYNCS_SJIS0213, VYNCS_BIG5, VYNCS_EUC_JP,
      VYNCS_EUC_KR}, oneWayInPeer},

    {"user-defined codes", glibc, {VYNCS_WCP936, VYNCS_WCP949, VYNCS_WCP950, VYNCS_BIG5}, ourPrivateUse},
    {"no user-defined codes", icu, {VYNCS_EUC_JP, VYNCS_EUC_CN, VYNCS_EUC_KR}, theirPrivateUse},
    {"the end of row C8 is not user-defined", glibc, {VYNCS_WCP950}, theirPrivateUse, {{0xC879, 0xC8FE}}},

    // Dashes, parallels, minus and broken bar.
    {"as in Windows", glibc, {VYNCS_WCP932}, otherCharacter, {{0x815C}, {0x8160, 0x8161}, {0x817C}, {0xFA55}}},
    {"backslash and tilde are the plain ones", glibc, {VYNCS_SJIS0213}, otherCharacter, {{0x815F}, {0x81B0}}},
    {"sequences of two characters are left out", glibc, {VYNCS_SJIS0213}, onlyTheirs,
     {{0x82F5, 0x82F9}, {0x8397, 0x839E}, {0x83F6}, {0x8663}, {0x8667, 0x866E}, {0x8685, 0x8686}}},
    {"JIS X 0212 is empty", bothPeers, {VYNCS_EUC_JP}, onlyTheirs, {{0x8FA1A1, 0x8FFEFE}}},
    {"the high bit of a trail byte is not tested", bothPeers, {VYNCS_EUC_JP}, trailBitUntested},
    {"yen sign and overline follow a lead byte 80", bothPeers, {VYNCS_EUC_JP}, onlyOurs, {{0x80DC}, {0x80FE}}},
    {"A1C0 is the plain backslash", bothPeers, {VYNCS_EUC_JP}, otherCharacter, {{0xA1C0}}},
    // Bar, cent, pound and not signs.
    {"as in JIS X 0208", icu, {VYNCS_EUC_JP}, otherCharacter, {{0xA1BD}, {0xA1F1, 0xA1F2}, {0xA2CC}}},
    {"single-shift codes end with the katakana", icu, {VYNCS_EUC_JP}, onlyTheirs, {{0x8EE0, 0x8EE4}}},

    {"trail bytes 80 to A0 are encoded but not decoded", bothPeers, {VYNCS_WCP936}, encodesOnly},
    {"trail bytes 80 to A0 are encoded but not decoded", icu, {VYNCS_WCP950}, encodesOnly},
    // Control pictures and ideographs.
    {"an extension", glibc, {VYNCS_WCP950}, onlyOurs, {{0xA3C0, 0xA3E0}, {0xF286, 0xF4A0}}},
    {"rows C6 to C8 are an extension", glibc, {VYNCS_WCP950}, otherCharacter, {{0xC6A1, 0xC878}, {0xC8CD, 0xC8D3}}},
    {"punctuation and an ideograph of another edition", glibc, {VYNCS_WCP950}, otherCharacter,
     {{0xA155, 0xA158}, {0xA1C2}, {0xA1E3}, {0xA1FD}, {0xC255}}},
    {"there is no euro sign", glibc, {VYNCS_WCP950}, onlyTheirs, {{0xA3E1}}},
    {"four box drawings are in row F9 only", glibc, {VYNCS_BIG5}, onlyTheirs, {{0xA2A4, 0xA2A7}}},
    {"row FE is empty", icu, {VYNCS_EUC_CN}, onlyTheirs, {{0xFEE0, 0xFEFE}}},
    {"A3A7 is the full-width apostrophe", icu, {VYNCS_EUC_CN}, otherCharacter, {{0xA3A7}}},
    {"additions of 1998 and later are left out", glibc, {VYNCS_EUC_KR}, onlyTheirs, {{0xA2E6, 0xA2E8}}},
    {"U+1E3F as in the first edition", bothPeers, {VYNCS_GB18030}, otherCharacter, {{0xA8BC}, {0x8135F437}}},
    {"later out of private use", glibc, {VYNCS_GB18030}, ourPrivateUse, {{0xA6D9, 0xA6F3}, {0xFE51, 0xFEA0}}},
    {"four-byte codes that glibc gave up for them", glibc, {VYNCS_GB18030}, onlyOurs,
     {{0x82359037, 0x82359134}, {0x84318236, 0x84318335}}},
};
