#include <vynulib/VynCharSet.h>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

/// What DefaultSet prints in an environment that holds nothing but LANG, or nothing at all. Empty where it fails.
std::string defaultSetIn(std::optional<std::string> const& lang) {
    std::string variable = "LANG=" + lang.value_or("");
    // The sanitizers' own options have to reach the child as well.
    std::string options =
        std::string("ASAN_OPTIONS=") + (std::getenv("ASAN_OPTIONS") ? std::getenv("ASAN_OPTIONS") : "");
    std::string program = DEFAULT_SET_PATH;
    char* argv[] = {program.data(), nullptr};
    char* envp[] = {options.data(), lang ? variable.data() : nullptr, nullptr};
    int ends[2];
    if (pipe(ends) != 0)
        return {};
    pid_t const child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        execve(program.c_str(), argv, envp);
        _exit(127);
    }
    close(ends[1]);
    std::array<char, 64> text{};
    ssize_t const length = read(ends[0], text.data(), text.size());
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (length < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return {};
    return {text.data(), static_cast<std::size_t>(length)};
}

struct LocaleRow {
    std::optional<std::string> lang;
    int detected;
};

TEST(Locale, DecidesTheDefaultSetAtLoad) {
    std::string const longText(100000, 'x');
    LocaleRow const rows[] = {
        {std::nullopt, 28591},
        {"", 28591},
        // each key
        {"en_US.UTF-8", 65001},
        {"de_DE.ISO-8859-1", 28591},
        {"pl_PL.ISO8859-2", 28592},
        {"x.iso88593", 28593},
        {"x.ISO88594", 28594},
        {"x.ISO88595", 28595},
        {"x.ISO88596", 28596},
        {"x.ISO88597", 28597},
        {"x.ISO88598", 28598},
        {"x.ISO88599", 28599},
        {"x.ISO8859-10", 28600},
        {"x.ISO8859-11", 28601},
        {"x.ISO8859-13", 28603},
        {"x.ISO8859-14", 28604},
        {"de_DE.ISO-8859-15@euro", 28605},
        {"x.ISO8859-16", 28606},
        {"ja", 51932},
        {"ja_JP.eucJP", 51932},
        {"ko_KR.eucKR", 51949},
        {"zh_TW.eucTW", 51950}, // has no converter
        {"zh_CN.EUC", 51936},
        {"ko_KR.EUC", 51949},
        {"zh_TW.EUC", 51950},
        {"ja_JP.SJIS", 932},
        {"ja_JP.ujis", 932},
        {"ja_JP.PCK", 932},
        {"zh_CN.GB18030", 54936},
        {"zh_TW.Big5", 30950},
        // each step
        {"C.UTF-8", 65001},
        {"UTF-8", 65001},
        {"utf8", 65001},
        {"en_US.UTF-8@euro", 65001},
        {"a.b.UTF-8", 28591},     // only the first dot counts
        {"en_US@x.UTF-8", 65001}, // the dot before the at sign
        {"ja@x", 51932},          // no dot: the language stays
        {"JA_JP", 28591},
        {"j-a", 51932},
        {"zh_cn.euc", 51936},
        {"a_CN.b.EUC", 28591},
        {"a_b_CN.EUC", 28591}, // only the first underscore counts
        {"CN.EUC", 51936},
        {"ja_JP.EUC", 28591},
        {"zh_CN.EUC@x", 28591}, // does not end in .EUC
        {"ru_RU.KOI8-R", 28591},
        {"zh_CN.EUCCN", 28591},
        // hostile
        {longText, 28591},
        {longText + ".UTF-8", 65001},
        {std::string(100000, '-') + "UTF8", 65001},
        {"\xFF\xFE.UTF-8", 28591}, // counted as one character of four bytes, so the text is cut
        {"x.UTF\xC3", 28591},
        {"\x80\x80.UTF-8", 28591}, // the leading stray byte makes the text empty
        {".", 28591},
        {"-", 28591},
        {"@", 28591},
        {"._@-.EUC", 28591},
        {".EUC", 28591},
        {"\x1B[31m.UTF-8\x1B[0m", 28591},
        {"U+004AA", 28591},
        {"\xF0\x9F\x98\x80.UTF-8", 65001},
    };
    for (LocaleRow const& row : rows) {
        int const served = row.detected == VYNCS_EUC_TW ? int{VYNCS_UTF8} : row.detected;
        EXPECT_EQ(defaultSetIn(row.lang), std::to_string(row.detected) + ' ' + std::to_string(served))
            << (row.lang ? row.lang->substr(0, 60) : "unset");
    }
}

} // namespace
