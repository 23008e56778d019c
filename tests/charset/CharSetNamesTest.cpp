#include "tests/support/FailingAllocation.h"
#include "tests/support/ServedSets.h"

#include <vynulib/Transcoding.h>
#include <vynulib/VynCharSetConverter.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using vynulib::charSetNamed;
using vynulib::preferredName;

bool isServed(VynCharSet cs) {
    return cs == VYNCS_UTF8 || cs == VYNCS_UTF16BE || cs == VYNCS_UTF32BE ||
           VynCharSetConverter::getConverter(cs) != VynCharSetConverter::getConverter(VYNCS_UTF8);
}

TEST(CharSetNames, AreThoseOfTheServedSets) {
    for (std::size_t i = 0; i < std::size(namedSets); ++i) {
        VynCharSet const cs = namedSets[i];
        std::string_view const name = setNames[i];
        if (cs == VYNCS_OS_DEFAULT)
            continue;
        std::optional<VynCharSet> const expected = isServed(cs) ? std::optional(cs) : std::nullopt;
        EXPECT_EQ(charSetNamed(name), expected) << name;
        EXPECT_EQ(charSetNamed(name.substr(name.find('_') + 1)), expected) << name;
        EXPECT_EQ(charSetNamed(std::to_string(cs)), expected) << name;
        if (expected) {
            EXPECT_EQ(charSetNamed(preferredName(cs)), cs) << name;
        } else {
            EXPECT_THROW(preferredName(cs), std::invalid_argument) << name;
        }
    }
    for (int const number : {0, -1, 2, 28602, 65000})
        EXPECT_THROW(preferredName(VynCharSet(number)), std::invalid_argument) << number;
}

TEST(CharSetNames, AreIanasWhereItHasOne) {
    EXPECT_EQ(preferredName(VYNCS_WCP932), "Windows-31J");
    EXPECT_EQ(preferredName(VYNCS_WCP949), "WCP949");
    EXPECT_EQ(preferredName(VYNCS_EUC_CN), "GB2312");
    EXPECT_EQ(preferredName(VYNCS_UTF16), "UTF-16");
    EXPECT_EQ(preferredName(VYNCS_UTF16ESC), "UTF16ESC");
}

TEST(CharSetNames, AreWhatPeopleType) {
    using namespace std::string_view_literals;
    struct {
        std::optional<VynCharSet> cs;
        std::vector<std::string_view> names;
    } const rows[] = {
        {VYNCS_ISO_8859_1,
         {"latin1", "Latin-1", "l1", "iso8859-1", "ISO_8859-1:1987", "iso 8859 1", "cp819", "8859_1"}},
        {VYNCS_ISO_8859_8, {"hebrew", "iso-8859-8-i", "logical"}},
        {VYNCS_ISO_8859_9, {"latin5", "ISO-8859-9"}},
        {VYNCS_ISO_8859_11, {"tis-620", "TIS620", "iso-8859-11"}},
        {VYNCS_ISO_8859_15, {"latin-9", "l9", "latin0"}},
        {VYNCS_WCP1251,
         {"windows-1251", "CP1251", "win1251", "x-cp1251", "cswindows1251", "ms-cyrl", " 1251\t", "cp_1251"}},
        {VYNCS_WCP1252, {"cp1252", "ms-ansi"}},
        {VYNCS_WCP874, {"windows-874", "cp874", "dos-874"}},
        {VYNCS_WCP932, {"cp932", "ms932", "windows-31j", "csWindows31J", "932"}},
        {VYNCS_SHIFTJIS, {"shift_jis", "Shift-JIS", "sjis", "x-sjis", "MS_Kanji"}},
        {VYNCS_SJIS0213, {"shift_jisx0213", "shift_jis-2004"}},
        {VYNCS_EUC_JP, {"euc-jp", "eucJP", "ujis", "EXTENDED_UNIX_CODE_PACKED_FORMAT_FOR_JAPANESE"}},
        {VYNCS_WCP936, {"gbk", "cp936", "windows-936", "x-gbk"}},
        {VYNCS_EUC_CN, {"gb2312", "euc-cn", "chinese", "gb_2312-80"}},
        {VYNCS_GB18030, {"gb18030", "GB-18030"}},
        {VYNCS_WCP949, {"cp949", "uhc", "ks_c_5601-1987", "korean", "ksc5601"}},
        {VYNCS_EUC_KR, {"euc-kr", "eucKR", "ksx1001"}},
        {VYNCS_WCP950, {"cp950", "ms950", "windows-950"}},
        {VYNCS_BIG5, {"big5", "Big-5", "big_five", "cn-big5"}},
        {VYNCS_KOI8R, {"koi8-r", "KOI8R", "koi8", "cp20866"}},
        {VYNCS_UTF8, {"utf-8", "UTF8", "u8", "cp65001"}},
        {VYNCS_UTF16, {"utf-16", "utf-16le", "ucs-2", "unicode", "cp1200"}},
        {VYNCS_UTF16BE, {"utf-16be", "unicodefffe", "vyncs_utf16be"}},
        {VYNCS_UTF32, {"utf-32", "utf-32le", "ucs-4"}},
        {VYNCS_UTF32BE, {"utf-32be", "ucs-4be"}},
        {VYNCS_OS_DEFAULT, {"-2", " -2 ", "os_default", "VYNCS_OS_DEFAULT"}},
        {std::nullopt, {"", "-", " ", "vyncs_", "2", "_2", "cp", "cp2", "windows", "utf-9", "utf-8x", "utf-8\0"sv}},
        {std::nullopt, {"utf-7", "us-ascii", "iso-2022-jp", "euc-tw", "big5-hkscs", "iso-8859-12", "koi8-u", "cp437"}},
        {std::nullopt, {"1251.0", "+1251", "0x4e3", "99999999999", "utf-8 latin1", "\xFF\xFE"}},
    };
    std::string const longName(100000, '1');
    EXPECT_EQ(charSetNamed(longName), std::nullopt);
    EXPECT_EQ(charSetNamed("utf" + std::string(100000, '-') + "8"), VYNCS_UTF8);
    for (auto const& [cs, names] : rows)
        for (std::string_view const name : names) {
            allocationsLeft = 0;
            std::optional<VynCharSet> const found = charSetNamed(name);
            allocationsLeft = unlimitedAllocations;
            EXPECT_EQ(found, cs) << name;
        }
}

} // namespace
