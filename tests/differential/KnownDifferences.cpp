#include "tests/differential/KnownDifferences.h"

#include <algorithm>
#include <sstream>

namespace {

bool isPrivateUse(Text const& text) {
    return text && text->size() == 1 && (*text)[0] >= 0xE000 && (*text)[0] < 0xF900;
}

// U+0080 to U+009F, or DEL, as the byte of its own value.
bool isSameControl(Text const& text, std::string const& code) {
    return text && code.size() == 1 && text->size() == 1 && (*text)[0] == codeNumber(code) &&
           codeNumber(code) >= 0x7F && codeNumber(code) < 0xA0;
}

bool isWellFormed(std::u16string const& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const isHigh = text[i] >> 10 == 0xD800 >> 10;
        if (isHigh && i + 1 < text.size() && text[i + 1] >> 10 == 0xDC00 >> 10)
            ++i;
        else if (text[i] >> 11 == 0xD800 >> 11)
            return false;
    }
    return true;
}

bool onlyOurs(Difference const& d) {
    return d.ours && !d.theirs;
}
bool onlyTheirs(Difference const& d) {
    return !d.ours && d.theirs;
}
bool otherCharacter(Difference const& d) {
    return d.ours && d.theirs;
}

// The peer decodes several codes to one character or encodes several characters to one code; the library has only the
// pairs that lead there and back.
bool oneWayInPeer(Difference const& d) {
    if (!d.theirs)
        return false;
    return d.peer.decode(d.code) != d.theirs || (!d.ours && d.peer.encode(*d.theirs) != d.code);
}

bool ourPrivateUse(Difference const& d) {
    return isPrivateUse(d.ours);
}
bool theirPrivateUse(Difference const& d) {
    return !d.ours && isPrivateUse(d.theirs);
}
bool ourControl(Difference const& d) {
    return isSameControl(d.ours, d.code) && !d.theirs;
}
bool theirControl(Difference const& d) {
    return isSameControl(d.theirs, d.code) && !d.ours;
}
bool ourIllFormed(Difference const& d) {
    return d.ours && !isWellFormed(*d.ours) && !d.theirs;
}
bool theirSequence(Difference const& d) {
    return !d.ours && d.theirs && d.theirs->size() > 1;
}
bool composedByPeer(Difference const& d) {
    return d.ours && d.theirs && d.ours->size() == d.code.size() && d.theirs->size() < d.ours->size();
}

bool encodesOnly(Difference const& d) {
    auto const trail = static_cast<unsigned char>(d.code.back());
    return d.code.size() == 2 && trail >= 0x80 && trail <= 0xA0 && !d.ours && d.theirs &&
           d.library.encode(*d.theirs) == d.code;
}

bool trailBitUntested(Difference const& d) {
    std::string highTrail = d.code;
    highTrail.back() = static_cast<char>(highTrail.back() | '\x80');
    return highTrail != d.code && d.ours && !d.theirs && d.library.decode(highTrail) == d.ours;
}

} // namespace

std::uint32_t codeNumber(std::string const& code) {
    std::uint32_t number = 0;
    for (char const byte : code)
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

CodeRanges::CodeRanges(char const* text) {
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        auto const hyphen = word.find('-');
        auto const number = [](std::string const& digits) {
            return static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16));
        };
        m_ranges.emplace_back(number(word.substr(0, hyphen)),
                              number(hyphen == std::string::npos ? word : word.substr(hyphen + 1)));
    }
}

bool CodeRanges::contain(std::uint32_t code) const {
    return m_ranges.empty() || std::ranges::any_of(m_ranges, [code](auto const& range) {
               return range.first <= code && code <= range.second;
           });
}

// Where ICU has the very table that a set is made from, its row proves the conversion, and glibc's row the table.
std::vector<ComparedSet> const comparedSets = {
    {VYNCS_WCP874, "ibm-874_P100-1995", "CP874"},
    {VYNCS_WCP932, "ibm-942_P12A-1999", "IBM932"},
    {VYNCS_WCP936, "windows-936-2000", "CP936"},
    {VYNCS_WCP949, "windows-949-2000", "UHC"},
    {VYNCS_WCP950, "ibm-950_P110-1999", "CP950"},
    {VYNCS_UTF16, "UTF-16LE", "UTF-16LE"},
    {VYNCS_UTF16ESC, nullptr, nullptr},
    {VYNCS_WCP1250, "ibm-5346_P100-1998", "CP1250"},
    {VYNCS_WCP1251, "ibm-5347_P100-1998", "CP1251"},
    {VYNCS_WCP1252, "ibm-5348_P100-1997", "CP1252"},
    {VYNCS_WCP1253, "ibm-5349_P100-1998", "CP1253"},
    {VYNCS_WCP1254, "ibm-5350_P100-1998", "CP1254"},
    {VYNCS_WCP1255, "ibm-9447_P100-2002", "CP1255"},
    {VYNCS_WCP1256, "ibm-9448_X100-2005", "CP1256"},
    {VYNCS_WCP1257, "ibm-9449_P100-2002", "CP1257"},
    {VYNCS_WCP1258, "ibm-5354_P100-1998", "CP1258"},
    {VYNCS_UTF32, "UTF-32LE", "UTF-32LE"},
    {VYNCS_KOI8R, "ibm-878_P100-1996", "KOI8-R"},
    {VYNCS_ISO_8859_1, "ISO-8859-1", "ISO-8859-1"},
    {VYNCS_ISO_8859_2, "ibm-912_P100-1995", "ISO-8859-2"},
    {VYNCS_ISO_8859_3, "ibm-913_P100-2000", "ISO-8859-3"},
    {VYNCS_ISO_8859_4, "ibm-914_P100-1995", "ISO-8859-4"},
    {VYNCS_ISO_8859_5, "ibm-915_P100-1995", "ISO-8859-5"},
    {VYNCS_ISO_8859_6, "ibm-1089_P100-1995", "ISO-8859-6"},
    {VYNCS_ISO_8859_7, "ibm-9005_X110-2007", "ISO-8859-7"},
    {VYNCS_ISO_8859_8, "ibm-5012_P100-1999", "ISO-8859-8"},
    {VYNCS_ISO_8859_9, "ibm-920_P100-1995", "ISO-8859-9"},
    {VYNCS_ISO_8859_10, "iso-8859_10-1998", "ISO-8859-10"},
    {VYNCS_ISO_8859_11, "iso-8859_11-2001", "ISO-8859-11"},
    {VYNCS_ISO_8859_13, "ibm-921_P100-1995", "ISO-8859-13"},
    {VYNCS_ISO_8859_14, "iso-8859_14-1998", "ISO-8859-14"},
    {VYNCS_ISO_8859_15, "ibm-923_P100-1998", "ISO-8859-15"},
    {VYNCS_ISO_8859_16, nullptr, "ISO-8859-16"},
    {VYNCS_SHIFTJIS, "ibm-943_P15A-2003", "CP932"},
    {VYNCS_SJIS0213, nullptr, "SHIFT_JISX0213"},
    {VYNCS_BIG5, "windows-950-2000", "BIG5"},
    {VYNCS_EUC_JP, "ibm-954_P101-2007", "EUC-JP"},
    {VYNCS_EUC_CN, "ibm-1383_P110-1999", "EUC-CN"},
    {VYNCS_EUC_KR, "ibm-970_P110_P110-2006_U2", "EUC-KR"},
    {VYNCS_GB18030, "gb18030", "GB18030"},
    {VYNCS_UTF8, "UTF-8", "UTF-8"},
};

std::vector<KnownDifference> const knownDifferences = {
    {"lone surrogates, values above U+10FFFF and four-byte overlong forms pass through",
     bothPeers,
     {VYNCS_UTF8, VYNCS_UTF16, VYNCS_UTF32},
     ourIllFormed,
     ""},
    {"overlong forms are decoded", bothPeers, {VYNCS_UTF8}, onlyOurs, "C080-C1BF E08080-E09FBF"},

    {"undefined bytes are the C1 controls of their value",
     glibc,
     {VYNCS_WCP1250, VYNCS_WCP1251, VYNCS_WCP1252, VYNCS_WCP1253, VYNCS_WCP1254, VYNCS_WCP1255, VYNCS_WCP1257,
      VYNCS_WCP1258, VYNCS_WCP949},
     ourControl,
     ""},
    {"there are no C1 controls and no DEL", bothPeers, {VYNCS_EUC_JP, VYNCS_EUC_KR}, theirControl, ""},
    {"there are no C1 controls and no DEL", icu, {VYNCS_EUC_CN}, theirControl, ""},
    {"there is no DEL", glibc, {VYNCS_EUC_CN}, theirControl, "7F"},
    {"0x80 is undefined", glibc, {VYNCS_WCP950}, theirControl, "80"},
    {"three controls are rotated", glibc, {VYNCS_WCP874, VYNCS_SHIFTJIS, VYNCS_WCP950}, otherCharacter, "1A 1C 7F"},
    {"0xAA is U+00AA", glibc, {VYNCS_WCP1253}, onlyOurs, "AA"},
    {"there is no punctuation below A1", glibc, {VYNCS_WCP874}, onlyTheirs, "80 85 91-97 A0"},
    {"the last four bytes are signs and a space", glibc, {VYNCS_WCP874}, onlyOurs, "FC-FF"},
    {"cent, pound and not signs are single bytes", glibc, {VYNCS_WCP932}, onlyOurs, "80 A0 FD"},
    {"glibc joins a letter and its mark", glibc, {VYNCS_WCP1255, VYNCS_WCP1258}, composedByPeer, ""},

    {"ICU maps one way only",
     icu,
     {VYNCS_WCP874, VYNCS_WCP932, VYNCS_WCP950, VYNCS_SHIFTJIS, VYNCS_BIG5, VYNCS_EUC_JP},
     oneWayInPeer,
     ""},
    {"glibc maps one way only",
     glibc,
     {VYNCS_WCP932, VYNCS_WCP950, VYNCS_WCP1258, VYNCS_SHIFTJIS, VYNCS_SJIS0213, VYNCS_BIG5, VYNCS_EUC_JP,
      VYNCS_EUC_KR},
     oneWayInPeer,
     ""},

    {"user-defined codes are private-use characters",
     glibc,
     {VYNCS_WCP936, VYNCS_WCP949, VYNCS_WCP950, VYNCS_BIG5},
     ourPrivateUse,
     ""},
    {"there are no user-defined codes", icu, {VYNCS_EUC_JP, VYNCS_EUC_CN, VYNCS_EUC_KR}, theirPrivateUse, ""},
    {"the end of row C8 is not user-defined", glibc, {VYNCS_WCP950}, theirPrivateUse, "C879-C8FE"},

    {"dashes, parallels, minus and broken bar are Windows'",
     glibc,
     {VYNCS_WCP932},
     otherCharacter,
     "815C 8160-8161 817C FA55"},
    {"backslash and tilde are the plain ones", glibc, {VYNCS_SJIS0213}, otherCharacter, "815F 81B0"},
    {"sequences of two characters are left out", glibc, {VYNCS_SJIS0213}, theirSequence, ""},
    {"JIS X 0212 is empty", bothPeers, {VYNCS_EUC_JP}, onlyTheirs, "8FA1A1-8FFEFE"},
    {"the high bit of a trail byte is not tested", bothPeers, {VYNCS_EUC_JP}, trailBitUntested, ""},
    {"yen sign and overline lie behind a lead byte 80", bothPeers, {VYNCS_EUC_JP}, onlyOurs, "80DC 80FE"},
    {"A1C0 is the plain backslash", bothPeers, {VYNCS_EUC_JP}, otherCharacter, "A1C0"},
    {"bar, cent, pound and not signs are those of JIS X 0208",
     icu,
     {VYNCS_EUC_JP},
     otherCharacter,
     "A1BD A1F1-A1F2 A2CC"},
    {"single-shift codes end with the katakana", icu, {VYNCS_EUC_JP}, onlyTheirs, "8EE0-8EE4"},

    {"trail bytes 80 to A0 are encoded but not decoded", bothPeers, {VYNCS_WCP936}, encodesOnly, ""},
    {"trail bytes 80 to A0 are encoded but not decoded", icu, {VYNCS_WCP950}, encodesOnly, ""},
    {"control pictures and ideographs of an extension", glibc, {VYNCS_WCP950}, onlyOurs, "A3C0-A3E0 F286-F4A0"},
    {"rows C6 to C8 are an extension", glibc, {VYNCS_WCP950}, otherCharacter, "C6A1-C878 C8CD-C8D3"},
    {"punctuation and an ideograph of another edition",
     glibc,
     {VYNCS_WCP950},
     otherCharacter,
     "A155-A158 A1C2 A1E3 A1FD C255"},
    {"there is no euro sign", glibc, {VYNCS_WCP950}, onlyTheirs, "A3E1"},
    {"four box drawings are in row F9 only", glibc, {VYNCS_BIG5}, onlyTheirs, "A2A4-A2A7"},
    {"row FE is empty", icu, {VYNCS_EUC_CN}, onlyTheirs, "FEE0-FEFE"},
    {"A3A7 is the full-width apostrophe", icu, {VYNCS_EUC_CN}, otherCharacter, "A3A7"},
    {"additions of 1998 and later are left out", glibc, {VYNCS_EUC_KR}, onlyTheirs, "A2E6-A2E8"},
    {"U+1E3F is a four-byte code, as in the first edition",
     bothPeers,
     {VYNCS_GB18030},
     otherCharacter,
     "A8BC 8135F437"},
    {"codes that left private use in later editions", glibc, {VYNCS_GB18030}, ourPrivateUse, "A6D9-A6F3 FE51-FEA0"},
    {"four-byte codes that glibc gave up for them",
     glibc,
     {VYNCS_GB18030},
     onlyOurs,
     "82359037-82359134 84318236-84318335"},
};
