#include "tests/support/FailingAllocation.h"

#include <vynulib/CharSetConverterManager.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

VynCharSet detectedIn(std::string const& lang) {
    setenv("LANG", lang.c_str(), 1);
    return g_oCnvtMgr.getDefaultCharSet();
}

TEST(Locale, IsReadFromLang) {
    std::string const longText(100000, 'x');
    struct {
        int detected;
        std::vector<std::string> langs;
    } const rows[] = {
        // Only the first dot counts, and the first underscore before ".EUC"; without a dot the language stays.
        {28591,
         {"", "a.b.UTF-8", "JA_JP", "a_CN.b.EUC", "a_b_CN.EUC", "ja_JP.EUC", "zh_CN.EUC@x", "zh_CN.EUCCN",
          "ru_RU.KOI8-R", "de_DE.ISO-8859-1"}},
        // Hostile. FF counts as one character of four bytes, so the text is cut; a leading 80 makes it empty.
        {28591,
         {longText, "\xFF\xFE.UTF-8", "x.UTF\xC3", "\x80\x80.UTF-8", ".", "-", "@", "._@-.EUC", ".EUC",
          "\x1B[31m.UTF-8\x1B[0m"}},
        {65001,
         {"en_US.UTF-8", "utf8", "en_US.UTF-8@euro", "en_US@x.UTF-8", longText + ".UTF-8",
          std::string(100000, '-') + "UTF8", "\xF0\x9F\x98\x80.UTF-8"}},
        {51932, {"ja", "ja@x", "j-a", "ja_JP.eucJP"}},
        {51949, {"ko_KR.eucKR", "ko_KR.EUC"}},
        {51950, {"zh_TW.eucTW", "zh_TW.EUC"}}, // has no converter
        {51936, {"zh_CN.EUC", "zh_cn.euc", "CN.EUC"}},
        {932, {"ja_JP.SJIS", "ja_JP.ujis", "ja_JP.PCK"}},
        {54936, {"zh_CN.GB18030"}},
        {30950, {"zh_TW.Big5"}},
    };
    for (auto const& [detected, langs] : rows)
        for (std::string const& lang : langs)
            EXPECT_EQ(detectedIn(lang), detected) << lang.substr(0, 60);
    for (int part = 1; part <= 16; ++part)
        EXPECT_EQ(detectedIn("x.ISO8859-" + std::to_string(part)), part == 12 ? 28591 : 28590 + part);
}

// The locale of the process counts where LANG is unset, not where it is empty.
TEST(Locale, IsAskedForWithoutLang) {
    for (auto const& [locale, detected] : {std::pair("C.UTF-8", VYNCS_UTF8), {"C", VYNCS_ISO_8859_1}}) {
        ASSERT_NE(std::setlocale(LC_CTYPE, locale), nullptr);
        unsetenv("LANG");
        EXPECT_EQ(g_oCnvtMgr.getDefaultCharSet(), detected);
        EXPECT_EQ(detectedIn(""), VYNCS_ISO_8859_1);
    }
}

TEST(Locale, CannotKeepTheLibraryFromLoading) {
    setenv("LANG", ("en_US." + std::string(1000, 'x')).c_str(), 1);
    allocationsLeft = 0;
    VynCharSet const detected = g_oCnvtMgr.getDefaultCharSet();
    allocationsLeft = unlimitedAllocations;
    EXPECT_EQ(detected, VYNCS_ISO_8859_1);
}

} // namespace
