// Prints docs/charsets.md: what the library says of its sets, their names, and how they differ from those of ICU, as the
// comparison of the suite knows, and of glibc, as it is in Debian 12: charsets docs/charsets.md

#include "charset/SetNames.h"
#include "tests/differential/KnownDifferences.h"
#include "tools/charsets/GlibcComparison.h"

#include <vynulib/Transcoding.h>
#include <vynulib/VynCharSetConverter.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <typeinfo>

namespace {

std::map<VynCharSet, char const*> const languages = {
    {VYNCS_WCP874, "Thai"},
    {VYNCS_WCP932, "Japanese, Windows"},
    {VYNCS_WCP936, "Simplified Chinese (GBK), Windows"},
    {VYNCS_WCP949, "Korean (Unified Hangul Code), Windows"},
    {VYNCS_WCP950, "Traditional Chinese, Windows"},
    {VYNCS_UTF16, "UTF-16, machine byte order"},
    {VYNCS_UTF16ESC, "UTF-16 as ASCII with \"U+XXXX\" escapes"},
    {VYNCS_WCP1250, "Central European, Windows"},
    {VYNCS_WCP1251, "Cyrillic, Windows"},
    {VYNCS_WCP1252, "Western European, Windows"},
    {VYNCS_WCP1253, "Greek, Windows"},
    {VYNCS_WCP1254, "Turkish, Windows"},
    {VYNCS_WCP1255, "Hebrew, Windows"},
    {VYNCS_WCP1256, "Arabic, Windows"},
    {VYNCS_WCP1257, "Baltic, Windows"},
    {VYNCS_WCP1258, "Vietnamese, Windows"},
    {VYNCS_UTF32, "UTF-32, machine byte order"},
    {VYNCS_KOI8R, "Russian"},
    {VYNCS_ISO_8859_1, "Western European (Latin-1)"},
    {VYNCS_ISO_8859_2, "Central European (Latin-2)"},
    {VYNCS_ISO_8859_3, "South European (Latin-3)"},
    {VYNCS_ISO_8859_4, "North European (Latin-4)"},
    {VYNCS_ISO_8859_5, "Cyrillic"},
    {VYNCS_ISO_8859_6, "Arabic"},
    {VYNCS_ISO_8859_7, "Greek"},
    {VYNCS_ISO_8859_8, "Hebrew"},
    {VYNCS_ISO_8859_9, "Turkish (Latin-5)"},
    {VYNCS_ISO_8859_10, "Nordic (Latin-6)"},
    {VYNCS_ISO_8859_11, "Thai"},
    {VYNCS_ISO_8859_13, "Baltic (Latin-7)"},
    {VYNCS_ISO_8859_14, "Celtic (Latin-8)"},
    {VYNCS_ISO_8859_15, "Western European with the euro sign (Latin-9)"},
    {VYNCS_ISO_8859_16, "South-Eastern European (Latin-10)"},
    {VYNCS_SHIFTJIS, "Shift_JIS, Japanese"},
    {VYNCS_SJIS0213, "Shift_JIS-2004 (JIS X 0213), Japanese"},
    {VYNCS_BIG5, "Big5, Traditional Chinese"},
    {VYNCS_EUC_JP, "EUC-JP, Japanese"},
    {VYNCS_EUC_CN, "EUC-CN (GB 2312), Simplified Chinese"},
    {VYNCS_EUC_KR, "EUC-KR (KS X 1001), Korean"},
    {VYNCS_GB18030, "GB 18030, Chinese and all of Unicode"},
    {VYNCS_UTF8, "UTF-8"},
};

std::u16string allCharacters() {
    std::u16string text;
    for (char32_t c = 1; c <= 0x10FFFF; ++c)
        if (c < 0xD800 || (c > 0xDFFF && c < 0x10000))
            text += static_cast<char16_t>(c);
        else if (c >= 0x10000)
            text += {static_cast<char16_t>(0xD7C0 + (c >> 10)), static_cast<char16_t>(0xDC00 + (c & 0x3FF))};
    return text;
}

std::string characterCount(VynCharSet cs) {
    static std::u16string const all = allCharacters();
    constexpr std::size_t count = 0x10FFFF - 0x800; // all code points but U+0000 and the surrogates
    vynulib::Report report;
    vynulib::encode(cs, all, vynulib::OnError::drop, &report);
    return report.losses == 0 ? "all" : std::to_string(count - report.losses);
}

char const* className(VynCharSet cs) {
    VynCharSetConverter const& converter = *VynCharSetConverter::getConverter(cs);
    char const* name = typeid(converter).name();
    while (*name >= '0' && *name <= '9')
        ++name;
    return name;
}

std::string codeList(std::vector<CodeRange> const& codes) {
    std::string list;
    for (auto const& [first, last] : codes) {
        char text[40];
        std::snprintf(text, sizeof text, last == first ? "%s%X" : "%s%X to %X", list.empty() ? "" : ", ", first, last);
        list += text;
    }
    return list;
}

void printSets() {
    std::puts("| Number | Name | Preferred name | Text in | Bytes of a character | of the terminator | Characters "
              "| Converter |\n|---:|---|---|---|:---:|:---:|---:|---|");
    for (auto const& [cs, language] : languages) {
        std::string bytes = std::to_string(GetMinUnitSize(cs));
        if (GetMaxUnitSize(cs) != GetMinUnitSize(cs))
            bytes += " to " + std::to_string(GetMaxUnitSize(cs));
        std::printf("| %d | `%s` | %s | %s | %s | %u | %s | `%s` |\n", cs, VynCharSetToString(cs),
                    vynulib::preferredName(cs).data(), language, bytes.c_str(), GetNullCharSize(cs),
                    characterCount(cs).c_str(), className(cs));
    }
}

void printNames() {
    std::puts("| Name | also known as |\n|---|---|");
    for (auto const& [cs, preferred, aliases] : vyn::setNames)
        if (cs != VYNCS_OS_DEFAULT)
            std::printf("| `%s` | %.*s%s%.*s |\n", VynCharSetToString(cs), static_cast<int>(preferred.size()),
                        preferred.data(), aliases.empty() ? "" : " ", static_cast<int>(aliases.size()), aliases.data());
}

void printDifferences() {
    std::puts("| Set | ICU's converter |\n|---|---|");
    for (auto const& [cs, icuName] : comparedSets)
        std::printf("| `%s` | %s |\n", VynCharSetToString(cs), icuName ? icuName : "none");
    std::puts("\n| What differs | in | Codes |\n|---|---|---|");
    for (KnownDifference const& known : knownDifferences) {
        std::string sets;
        for (VynCharSet const cs : known.sets)
            sets += (sets.empty() ? "`" : ", `") + std::string(VynCharSetToString(cs)) + '`';
        std::printf("| %s | %s | %s |\n", known.reason, sets.c_str(), codeList(known.codes).c_str());
    }
}

// Codes in a row as one range. Of too many ranges, how many codes there are.
std::string codeSummary(std::vector<unsigned> const& codes) {
    std::vector<CodeRange> ranges;
    for (unsigned const code : codes)
        if (ranges.empty() || ranges.back().last + 1 != code)
            ranges.push_back({code});
        else
            ranges.back().last = code;
    constexpr std::size_t fewRanges = 12;
    return ranges.size() <= fewRanges ? codeList(ranges) : std::to_string(codes.size()) + " codes";
}

void printGlibcDifferences() {
    std::puts(
        "| Set | glibc's converter | Codes that only the library has | that only glibc has | of another character "
        "|\n|---|---|---|---|---|");
    std::string equal;
    for (auto const& [cs, name, onlyHere, onlyThere, otherCharacter] : compareWithGlibc())
        if (onlyHere.empty() && onlyThere.empty() && otherCharacter.empty())
            equal += (equal.empty() ? "`" : ", `") + std::string(VynCharSetToString(cs)) + '`';
        else
            std::printf("| `%s` | %s | %s | %s | %s |\n", VynCharSetToString(cs), name, codeSummary(onlyHere).c_str(),
                        codeSummary(onlyThere).c_str(), codeSummary(otherCharacter).c_str());
    std::printf("\nNo code of one or two bytes differs in %s.\n", equal.c_str());
}

// What another glibc would change stays as the page has it.
void printGlibcSection(char const* page) {
    constexpr char const heading[] = "\n## What differs from glibc\n";
    constexpr char const version[] = "2.36";
    if (std::strcmp(glibcVersion(), version) == 0) {
        std::printf("%s\nOf codes of one and two bytes, from glibc %s:\n\n", heading, version);
        printGlibcDifferences();
        return;
    }
    std::ifstream file(page);
    std::string const text(std::istreambuf_iterator<char>(file), {});
    std::size_t const begin = text.find(heading);
    std::fputs(begin == std::string::npos ? heading : text.c_str() + begin, stdout);
}

} // namespace

int main(int argc, char** argv) {
    std::puts(
        "# The character sets\n\n"
        "`scripts/charsets` writes this page from what the library says of itself. The bytes of a character are "
        "counted "
        "per\nUTF-16 unit: UTF-8's four-byte sequences stand for two units. The characters are those that the strict "
        "functions\nconvert into the set and back, U+0000 not counted.\n");
    printSets();
    std::puts(
        "\nThirteen more sets have a name but no converter: the ISO-2022 family, EUC-TW, the big-endian UTF-16 and "
        "UTF-32, and\n`VYNCS_OS_DEFAULT`, which stands for the default set. Converters, strings and one-call functions "
        "take the first twelve\nfor UTF-8; of them the strict functions convert the two big-endian ones and refuse the "
        "others.\n\n"
        "## Names\n\nThat `vynulib::charSetNamed` and `vynconv` know, in any case and without regard to \"-\", \"_\" "
        "and "
        "blanks. Numbers are\nnames as well, by themselves and after cp, ms, win, windows and the like.\n");
    printNames();
    std::puts("\n## What differs from ICU\n\nThe suite compares every code and every character of the converters with "
              "those of "
              "ICU that are nearest:\n");
    printDifferences();
    if (argc > 1)
        printGlibcSection(argv[1]);
}
