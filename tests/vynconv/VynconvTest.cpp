#include "tests/support/Random.h"

#include <vynulib/VynCharSetConverter.h>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

constexpr std::size_t chunkBytes = 256UL * 1024; // what the command reads at a time

struct Outcome {
    int code;
    std::string out, err;
};

std::string readFile(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(fs::path const& path, std::string const& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

/// Runs the command in a directory of its own, which goes with the test.
class Vynconv : public ::testing::Test {
protected:
    Vynconv() {
        std::string pattern = fs::temp_directory_path() / "vynconv-test-XXXXXX";
        dir = mkdtemp(pattern.data());
        fs::create_directory(dir / "work");
    }
    ~Vynconv() override { fs::remove_all(dir); }

    /// `line` are the arguments as the shell takes them, `closing` what closes standard descriptors.
    Outcome run(std::string const& line, std::string const& input = {}, std::string const& closing = {}) {
        for (char const* name : {"in", "out", "err"})
            fs::remove(dir / name); // truncating a file just written can make the file system wait for the disk
        writeFile(dir / "in", input);
        std::string const command = "cd " + (dir / "work").string() + " && exec " VYNCONV_COMMAND " " + line +
                                    " <../in >../out 2>../err " + closing;
        int const status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(dir / "out"), readFile(dir / "err")};
    }

    Outcome convert(VynCharSet from, VynCharSet to, std::string const& input) {
        return run("-f " + std::to_string(from) + " -t " + std::to_string(to), input);
    }

    fs::path work(char const* name) const { return dir / "work" / name; }

    fs::path dir;
};

template <class Unit>
std::string bytesOf(std::basic_string<Unit> const& text) {
    return {reinterpret_cast<char const*>(text.data()), text.size() * sizeof text[0]};
}

// What the library makes of a whole text in one call.
std::string encodeWhole(VynCharSet cs, std::u16string const& text) {
    std::string bytes(text.size() * 6 + 4, '\0');
    auto const* const units = reinterpret_cast<unsigned short const*>(text.c_str());
    bytes.resize(UTF16ToLocal(bytes.data(), units, bytes.size(), cs));
    return bytes;
}

TEST_F(Vynconv, ConvertsAndReports) {
    struct Case {
        char const* args;
        std::string in, out;
        char const* err; // part of it; "" for none at all
        int code;
    };
    Case const cases[] = {
        // Names and numbers.
        {"-f VYNCS_KOI8R -t 65001 -", "\xC1", "\xD0\xB0", "", 0},
        {"-f Wcp1252 -t vyncs_utf16", "\x80z", bytesOf(u"\u20ACz"s), "", 0},
        {"-f utf8 -t koi8r", "", "", "", 0},
        // Zeros are text.
        {"-f utf8 -t utf32", "\xC0\x80x", bytesOf(U"\0x"s), "", 0},
        {"-f utf16esc -t utf8", "U+0000U+00E9U+00e9", "\0\xC3\xA9U+00e9"s, "", 0},
        // The lenient parts of UTF-8: what is converted is no loss, whatever the decoder's flag says.
        {"-f utf8 -t utf8", "\xEF\xBF\xBD\xED\xA0\xBD\xED\xB8\x80", "\xEF\xBF\xBD\xF0\x9F\x98\x80", "", 0},
        {"-f utf8 -t utf8", "a\n\x80z\n\xC3", "a\nz\n\uFFFD",
         "2 characters could not be converted, the first in line 2", 1},
        {"-f utf8 -t utf8", "\xF0\x9F\x98\x80\x80", "\xF0\x9F\x98\x80", "1 character", 1},
        {"-f utf8 -t koi8r", "\xF4\x90\x80\x80\xC3.\xE9z",
         "??"
         "?.?z",
         "3 characters", 1},
        // Other sets' losses.
        {"-f gb18030 -t utf16", "\x84\x31\xA4\x37\xFF\0\x81"s, bytesOf(u"\uFFFD\uFFFD\0\uFFFD"s), "2 characters", 1},
        {"-f euc_jp -t utf8", "\x80\n\xA4\xA2", "\n\xE3\x81\x82", "", 0},
        {"-f utf32 -t koi8r", bytesOf(U"a\x110000z"s), "a??z", "1 character", 1},
        // Incomplete units and lone surrogates.
        {"-f utf16 -t utf8", bytesOf(u"a\n"s) + "b", "a\n\uFFFD", "1 character could not be converted, in line 2", 1},
        {"-f utf32 -t utf16", bytesOf(U"a"s) + "bcd", bytesOf(u"a\uFFFD"s), "1 character", 1},
        {"-f utf16 -t gb18030", bytesOf(u"\xD800z\n\xDC00"s), "?z\n?", "2 characters", 1},
        {"-f utf16 -t utf8", bytesOf(u"\xD83D\xDE00\xD83D"s), "\xF0\x9F\x98\x80?", "1 character", 1},
        {"-f utf16 -t utf16esc", bytesOf(u"A\xD83D"s), "AU+D83D", "", 0},
        // Policies.
        {"--on-error=escape -f utf8 -t koi8r", "\xE4\xB8\x80z\xFF", "U+4E00zU+FFFD", "2 characters", 1},
        {"--on-error=escape -f utf16 -t utf8", bytesOf(u"\xD800z\xD801"s), "U+D800zU+D801", "2 characters", 1},
        {"--on-error=stop -f utf8 -t koi8r", "a\nb日z\x80", "a\nb", ", in line 2; stopped", 1},
        {"--on-error=stop -f gb18030 -t utf8", "a\0b\xFFz"s, "a\0b"s, "stopped", 1},
        // Usage and files.
        {"-t utf8", "a", "", "-f FROM and -t TO", 2},
        {"-f utf9 -t utf8", "a", "", "unknown character set 'utf9'", 2},
        {"-f utf8 -t 28602", "a", "", "unknown character set '28602'", 2},
        {"-f EUC_TW -t utf8", "a", "", "no converter for VYNCS_EUC_TW", 2},
        {"-f utf8 -t utf8 --on-error=ignore", "a", "", "--on-error", 2},
        {"-f utf8 -t", "a", "", "needs a value", 2},
        {"-f utf8 -t utf8 missing", "a", "", "missing: No such file", 2},
        {"-f utf8 -t utf8 -o missing/out", "a", "", "missing/out: No such file", 2},
        {"-f utf8 -t utf8 -o /dev/full", "a", "", "/dev/full: No space left", 2},
        {"-f utf8 -t utf16 -o /dev/stdout", "a", bytesOf(u"a"s), "", 0},
    };
    for (Case const& c : cases) {
        Outcome const got = run(c.args, c.in);
        SCOPED_TRACE(c.args + " <<< "s + ::testing::PrintToString(c.in));
        EXPECT_EQ(got.code, c.code);
        EXPECT_EQ(got.out, c.out);
        EXPECT_TRUE(*c.err ? got.err.find(c.err) != std::string::npos : got.err.empty()) << got.err;
    }
}

// The first file that the command opens would get the number of a closed descriptor.
TEST_F(Vynconv, StartedWithoutStandardDescriptors) {
    struct Case {
        char const* name;
        char const* closing;
        char const* args;
        int code;
        std::string err;
        char const* file; // what `out` then holds; null where there must be none
    };
    Case const cases[] = {
        {"input", "<&-", "-o out", 2, "vynconv: can't read standard input: Bad file descriptor\n", nullptr},
        {"input by name", "<&-", "-o out /dev/stdin", 2, "vynconv: can't read /dev/stdin: Is a directory\n", nullptr},
        {"output", ">&-", "", 2, "vynconv: can't write standard output: Bad file descriptor\n", nullptr},
        {"messages", "2>&-", "-o out", 1, "", "?"},
        {"all", "<&- >&- 2>&-", "-o out", 2, "", nullptr},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        Outcome const got = run("-f utf8 -t koi8r "s + c.args, "\u4E00", c.closing);
        EXPECT_EQ(got.code, c.code);
        EXPECT_EQ(got.err, c.err);
        EXPECT_EQ(fs::exists(work("out")), c.file != nullptr);
        EXPECT_EQ(readFile(work("out")), c.file ? c.file : "");
        fs::remove(work("out"));
    }
}

TEST_F(Vynconv, TellsAboutSetsAndItself) {
    std::string const list = run("--list").out;
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 41);
    EXPECT_NE(list.find("20866 VYNCS_KOI8R\n"), std::string::npos);

    setenv("LANG", "ja_JP.eucJP", 1);
    EXPECT_EQ(run("--detect").out, "VYNCS_EUC_JP (51932) from LANG=ja_JP.eucJP\n");
    EXPECT_EQ(run("-f os_default -t utf8", "\xA4\xA2").out, "\xE3\x81\x82");
    setenv("LANG", "zh_TW.eucTW", 1);
    EXPECT_EQ(run("-f os_default -t utf8").code, 2);
    unsetenv("LANG");
    EXPECT_EQ(run("--detect").out, "VYNCS_ISO_8859_1 (28591) from LC_CTYPE=C\n");

    EXPECT_EQ(run("--help").out.rfind("Usage: vynconv", 0), 0U);
    EXPECT_EQ(run("--version").out.rfind("vynconv ", 0), 0U);
}

// One line longer than a chunk, without a blank: the command has to find the ends of characters itself. A few
// characters in front move all others across the borders of the chunks. The whole text in one call is the measure.
TEST_F(Vynconv, LongLinesAtEveryBorder) {
    std::pair<VynCharSet, std::vector<std::u16string>> const charactersOfSets[] = {
        {VYNCS_UTF8, {u"a", u"\u00E9", u"\u4E00", u"\U0001F600", u"\uFFFD"}},
        {VYNCS_UTF16, {u"a", u"\u4E00", u"\U0001F600", u"\uFFFD"}},
        {VYNCS_UTF16ESC, {u"a", u"\u4E00", u"\U0001F600", u"\u00E9"}},
        {VYNCS_GB18030, {u"0", u"\u4E00", u"\u0080", u"\U0001F600", u"\uFFFD", u"\u00E9"}},
        {VYNCS_SJIS0213, {u"\u3042", u"\uFF71", u"\U0002000B", u"\u8868"}},
        {VYNCS_EUC_JP, {u"\u3042", u"\uFF71", u"\u00A5", u"\u4E9C"}},
    };
    TestRandom random;
    for (auto const& [cs, characters] : charactersOfSets) {
        std::u16string text;
        while (text.size() < chunkBytes + 100)
            text += characters[random.below(characters.size())];
        for (std::size_t shift = 0; shift < 6; ++shift, text.insert(0, 1, u'x')) {
            SCOPED_TRACE(VynCharSetToString(cs) + " shifted by "s + std::to_string(shift));
            std::string const local = encodeWhole(cs, text), utf8 = encodeWhole(VYNCS_UTF8, text);
            Outcome const to = convert(VYNCS_UTF8, cs, utf8), from = convert(cs, VYNCS_UTF8, local);
            EXPECT_EQ(to.err + from.err, "");
            EXPECT_TRUE(to.out == local && from.out == utf8) << "too long to be printed, seed " << random.seed();
        }
    }
}

// Bytes at random, rich in leads without trails: cuts must not make or hide an error.
TEST_F(Vynconv, RandomBytes) {
    TestRandom random;
    for (VynCharSet const cs : {VYNCS_UTF8, VYNCS_GB18030, VYNCS_WCP932, VYNCS_WCP936, VYNCS_WCP949, VYNCS_BIG5,
                                VYNCS_EUC_CN, VYNCS_EUC_JP, VYNCS_SJIS0213, VYNCS_WCP1255}) {
        std::string bytes(chunkBytes + 5000 + random.below(9), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random.below(4) == 0 ? '!' + random.below(94) : 0x80 + random.below(128));
        std::u16string text(bytes.size(), u'\0');
        auto* const units = reinterpret_cast<unsigned short*>(text.data());
        text.resize(VynCharSetConverter::getConverter(cs)->toUTF16(units, bytes.c_str(), bytes.size(), ILLCHAR_REPLACE,
                                                                   nullptr, -1));
        Outcome const got = convert(cs, VYNCS_UTF16, bytes);
        EXPECT_TRUE(got.code == 1 && got.out == bytesOf(text)) << VynCharSetToString(cs) << ", seed " << random.seed();
        // UTF-8 skips bytes: not all that is lost is seen in the text.
        std::string const lost = std::to_string(std::count(text.begin(), text.end(), u'\uFFFD'));
        EXPECT_TRUE(cs == VYNCS_UTF8 || got.err.find(lost + " characters") != std::string::npos) << got.err << lost;
    }
}

TEST_F(Vynconv, ZerosAndLinesInLongFiles) {
    TestRandom random;
    std::string bytes(3 * chunkBytes + 7, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random.below(20) == 0 ? 0 : random.below(256));
    std::string const line = std::to_string(std::count(bytes.begin(), bytes.end(), '\n') + 1);
    for (VynCharSet const cs : {VYNCS_UTF8, VYNCS_UTF16, VYNCS_UTF32, VYNCS_UTF16ESC, VYNCS_GB18030}) {
        Outcome const there = convert(VYNCS_KOI8R, cs, bytes);
        Outcome const back = convert(cs, VYNCS_KOI8R, there.out + convert(VYNCS_UTF8, cs, "\u4E00").out);
        EXPECT_EQ(there.code, 0);
        EXPECT_TRUE(back.out == bytes + "?") << cs << ", seed " << random.seed();
        EXPECT_NE(back.err.find(" 1 character could not be converted, in line " + line + "\n"), std::string::npos);
    }
}

TEST_F(Vynconv, OutputIsWholeOrAbsent) {
    std::string const longText(2 * chunkBytes, 'x');
    writeFile(work("good"), "\xC1");
    writeFile(work("bad"), longText + "\xE4\xB8\x80");
    auto const codeOf = [&](std::string const& args) { return run(args).code; };
    auto const fileCount = [&] { return std::distance(fs::directory_iterator(dir / "work"), {}); };

    writeFile(work("old"), "old");
    for (std::string const name : {"new", "old"}) {
        EXPECT_EQ(codeOf("-f utf8 -t koi8r --on-error=stop bad -o " + name), 1);
        EXPECT_EQ(codeOf("-f utf8 -t koi8r bad missing -o " + name), 2);
    }
    EXPECT_EQ(readFile(work("old")), "old");
    EXPECT_EQ(fileCount(), 3); // neither "new" nor a temporary file
    mode_t const mask = umask(026);
    EXPECT_EQ(codeOf("-f utf8 -t koi8r -o out bad"), 1);
    umask(mask);
    EXPECT_EQ(readFile(work("out")), longText + "?");
    EXPECT_EQ(fs::status(work("out")).permissions(), fs::perms(0640));

    // The output may be an input, also through a link, which stays one.
    fs::create_symlink("good", work("link"));
    EXPECT_EQ(codeOf("-f koi8r -t utf8 -o link good link"), 0);
    EXPECT_EQ(readFile(work("good")), "\xD0\xB0\xD0\xB0");
    EXPECT_TRUE(fs::is_symlink(work("link")));
    EXPECT_EQ(fileCount(), 5);
}

} // namespace
