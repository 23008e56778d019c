#include "tests/support/FailingAllocation.h"

#include <vynulib/CharSetConverterManager.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace {

/// As a program gets its arguments and its environment.
std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

/// What DefaultSet prints in an environment that holds nothing but LANG, or nothing at all, beside the sanitizers' own
/// options.
std::string defaultSetIn(std::optional<std::string> const& lang) {
    char const* const options = std::getenv("ASAN_OPTIONS");
    std::vector<std::string> variables = {std::string("ASAN_OPTIONS=") + (options ? options : "")};
    if (lang)
        variables.push_back("LANG=" + *lang);
    std::vector<std::string> words = {DEFAULT_SET_COMMAND};
    std::vector<char*> const environment = pointers(variables), command = pointers(words);

    int pipe[2];
    EXPECT_EQ(pipe2(pipe, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], STDOUT_FILENO);
    pid_t child = -1;
    EXPECT_EQ(posix_spawnp(&child, command[0], &actions, nullptr, command.data(), environment.data()), 0) << command[0];
    posix_spawn_file_actions_destroy(&actions);
    close(pipe[1]);

    char text[64];
    ssize_t const length = read(pipe[0], text, sizeof text); // of one write
    close(pipe[0]);
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0 && length > 0 ? std::string(text, static_cast<std::size_t>(length)) : "failure";
}

TEST(Locale, DecidesTheDefaultSetAtLoad) {
    std::string const longText(100000, 'x');
    struct {
        int detected;
        std::vector<std::optional<std::string>> langs;
    } const rows[] = {
        // Only the first dot counts, and the first underscore before ".EUC"; without a dot the language stays.
        {28591,
         {std::nullopt, "", "a.b.UTF-8", "JA_JP", "a_CN.b.EUC", "a_b_CN.EUC", "ja_JP.EUC", "zh_CN.EUC@x", "zh_CN.EUCCN",
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
        for (auto const& lang : langs)
            EXPECT_EQ(defaultSetIn(lang), std::to_string(detected)) << (lang ? lang->substr(0, 60) : "unset");
    for (int part = 1; part <= 16; ++part)
        EXPECT_EQ(defaultSetIn("x.ISO8859-" + std::to_string(part)), std::to_string(part == 12 ? 28591 : 28590 + part));
}

// The locale of the process counts where LANG is unset, not where it is empty.
TEST(Locale, IsAskedForWithoutLang) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    unsetenv("LANG");
    EXPECT_EQ(g_oCnvtMgr.getDefaultCharSet(), VYNCS_UTF8);
    setenv("LANG", "", 1);
    EXPECT_EQ(g_oCnvtMgr.getDefaultCharSet(), VYNCS_ISO_8859_1);
}

TEST(Locale, CannotKeepTheLibraryFromLoading) {
    setenv("LANG", ("en_US." + std::string(1000, 'x')).c_str(), 1);
    allocationsLeft = 0;
    VynCharSet const detected = g_oCnvtMgr.getDefaultCharSet();
    allocationsLeft = unlimitedAllocations;
    EXPECT_EQ(detected, VYNCS_ISO_8859_1);
}

} // namespace
