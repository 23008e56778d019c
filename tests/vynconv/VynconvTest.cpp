#include "tests/support/Random.h"

#include <vynulib/Transcoding.h>
#include <vynulib/Version.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using vynulib::OnError;

constexpr std::size_t chunkBytes = 256UL * 1024; // what the command reads at a time

struct Outcome {
    int code; // negative: the signal that ended it
    std::string out, err;
};

using Words = std::vector<std::string>;

Words split(std::string const& line) {
    std::istringstream words(line);
    return {std::istream_iterator<std::string>(words), {}};
}

std::string readFile(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void writeFile(fs::path const& path, std::string const& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

/// Runs the command in a directory of its own, which goes with the test.
class Vynconv : public ::testing::Test {
protected:
    Vynconv() {
        std::string pattern = fs::temp_directory_path() / "vynconv's (test)-XXXXXX";
        dir = mkdtemp(pattern.data());
        errors = dir / "err";
        fs::create_directory(work());
        std::signal(SIGPIPE, SIG_IGN);
        sigfillset(&defaultSignals);
        rlimit const noCore{};
        setrlimit(RLIMIT_CORE, &noCore);
    }
    ~Vynconv() override { fs::remove_all(dir); }

    fs::path work(char const* name = "") const { return dir / "work" / name; }
    long fileCount() const { return std::distance(fs::directory_iterator(work()), {}); }

    /// Descriptors 0 and 1 of the command are `in` and `out`; those in `closed` are closed.
    pid_t start(Words const& args, int in, int out, std::vector<int> const& closed = {}) {
        Words words = launcher;
        words.insert(words.end(), {VYNCONV_COMMAND});
        words.insert(words.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);

        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in, 0);
        posix_spawn_file_actions_adddup2(&actions, out, 1);
        posix_spawn_file_actions_addopen(&actions, 2, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY, 0600);
        posix_spawn_file_actions_addchdir_np(&actions, work().c_str());
        for (int const descriptor : closed)
            posix_spawn_file_actions_addclose(&actions, descriptor);
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setsigdefault(&attributes, &defaultSignals);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
        pid_t child = -1;
        EXPECT_EQ(posix_spawnp(&child, argv[0], &actions, &attributes, argv.data(), environ), 0) << argv[0];
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&actions);
        close(in);
        close(out);
        return child;
    }

    Outcome finish(pid_t child) {
        int status = 0;
        waitpid(child, &status, 0);
        int const code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        return {code, readFile(dir / "out"), readFile(dir / "err")};
    }

    int openOut() { return open((dir / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600); }

    Outcome run(Words const& args, std::string const& input = {}, std::vector<int> const& closed = {}) {
        writeFile(dir / "in", input);
        return finish(start(args, open((dir / "in").c_str(), O_RDONLY | O_CLOEXEC), openOut(), closed));
    }

    /// Starts a command that reads `input` from a pipe, and returns with it when it has read that.
    pid_t startReading(Words const& args, std::string const& input, int& pipeEnd) {
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        pipeEnd = ends[1];
        pid_t const child = start(args, ends[0], openOut());
        EXPECT_EQ(::write(pipeEnd, input.data(), input.size()), static_cast<ssize_t>(input.size()));
        waitUntilRead(pipeEnd);
        return child;
    }

    static void waitUntilRead(int pipeEnd) {
        for (int unread = 1; unread != 0; std::this_thread::sleep_for(std::chrono::milliseconds(1)))
            ASSERT_EQ(ioctl(pipeEnd, FIONREAD, &unread), 0);
    }

    fs::path dir;
    fs::path errors;         // where standard error of the command goes
    Words launcher;          // starts the command
    sigset_t defaultSignals; // of the command; the others are as this process has them
};

template <class Unit>
std::string bytesOf(std::basic_string<Unit> const& text) {
    return {reinterpret_cast<char const*>(text.data()), text.size() * sizeof text[0]};
}

TEST_F(Vynconv, ConvertsAndReports) {
    struct Case {
        char const* name;
        char const* args;
        std::string in, out;
        char const* err; // part of it; "" for none at all
        int code;
    };
    Case const cases[] = {
        {"name and number", "-f VYNCS_KOI8R -t 65001 -", "\xC1", "\xD0\xB0", "", 0},
        {"alias and long names", "--from-code=MS-ANSI --to-code utf_8", "\x80z", "\u20ACz", "", 0},
        {"empty", "-f utf8 -t koi8r", "", "", "", 0},
        {"default set", "-f koi8r", "\xC1", "?", "not in ISO-8859-1", 1},
        {"zeros", "-f utf8 -t utf32", "\0x"s, bytesOf(U"\0x"s), "", 0},
        {"escaped zero", "-f utf16esc -t utf8", "U+0000U+00E9U+00e9", "\0\xC3\xA9U+00e9"s, "", 0},
        {"to a device", "-f utf8 -t utf16 -o /dev/stdout", "a", bytesOf(u"a"s), "", 0},
        // Byte-order marks.
        {"mark of UTF-8", "-f utf8 -t koi8r", "\uFEFFa", "a", "", 0},
        {"only one mark", "-f utf8 -t utf8", "\uFEFF\uFEFFa", "\uFEFFa", "", 0},
        {"half a mark", "-f utf8 -t utf8", "\xEF\xBB", "\uFFFD", "bytes EF BB at offset 0", 1},
        {"mark decides", "-f UTF-16 -t utf8", "\xFE\xFF\0a\xFE\xFF"s, "a\uFEFF", "", 0},
        {"mark decides in UTF-32", "-f vyncs_utf32 -t utf8", "\0\0\xFE\xFF\0\0\0a"s, "a", "", 0},
        {"mark of the other order", "-f UTF-16LE -t utf8", "\xFE\xFF\0a"s, "\uFFFE\u6100", "", 0},
        {"mark of the named order", "-f UTF-16BE -t utf8", "\xFE\xFF\0a"s, "a", "", 0},
        {"loss after a mark", "-f UTF-16 -t utf8", "\xFE\xFF\0a\xD8\0"s, "a\uFFFD", "bytes D8 00 at offset 4", 1},
        {"mark in the output", "--bom -f koi8r -t utf16be", "a", "\xFE\xFF\0a"s, "", 0},
        {"no mark in the set", "--bom -f utf8 -t koi8r", "a", "", "--bom needs an output in UTF-8,", 2},
        // Losses.
        {"malformed", "-f utf8 -t utf8", "a\n\x80z\n\xC3", "a\n\uFFFDz\n\uFFFD",
         "vynconv: standard input: 2 characters could not be converted, "
         "the first in line 2: bytes 80 at offset 2, not in UTF-8\n",
         1},
        {"not in the set", "-f utf8 -t koi8r", "a\nb\u4E00z\xFF", "a\nb?z?",
         "line 2: bytes E4 B8 80 at offset 3, not in KOI8-R\n", 1},
        {"U+FFFD is no loss", "-f utf8 -t utf8", "\uFFFD", "\uFFFD", "", 0},
        {"half a unit", "-f utf16 -t utf8", bytesOf(u"a\n"s) + "b", "a\n\uFFFD",
         " 1 character could not be converted, in line 2: bytes 62 at offset 4", 1},
        {"pair", "-f utf16esc -t koi8r", "aU+D83DU+DE00", "a?", "bytes 55 2B 44 38 33 44 55 2B 44 45 30 30 at offset 1",
         1},
        {"escape", "--on-error=escape -f utf8 -t koi8r", "\u4E00\U0001F600z\xFF", "U+4E00U+D83DU+DE00z?",
         "3 characters", 1},
        {"drop", "--on-error=drop -f utf8 -t koi8r", "a\u4E00z\xFF", "az", "2 characters", 1},
        {"drop, as iconv has it", "-cf utf8 -t koi8r", "a\u4E00z\xFF", "az", "2 characters", 1},
        {"drop separates", "-c -f utf16esc -t utf8", "U+D83D\xFFU+DE00", "", "3 characters", 1},
        {"stop in encoding", "--on-error=stop -f utf8 -t koi8r", "a\nb\u4E00z\x80", "a\nb",
         "in line 2: bytes E4 B8 80 at offset 3, not in KOI8-R; stopped there", 1},
        {"stop in decoding", "--on-error=stop -f gb18030 -t utf8", "a\0b\xFFz"s, "a\0b"s,
         "bytes FF at offset 3, not in GB18030; stopped there", 1},
        // Usage and files.
        {"unknown set", "-f utf9 -t utf8", "a", "", "no character set 'utf9' is known, the nearest is UTF-8;", 2},
        {"nearest by own name", "-f wcp1253x -t utf8", "a", "", "nearest is windows-1253;", 2},
        {"unserved set", "-f EUC_TW -t utf8", "a", "", "no character set 'EUC_TW'", 2},
        {"unknown action", "--on-error=ignore", "a", "", "--on-error is", 2},
        {"nothing in place", "-i", "a", "", "-i needs the names of files\n", 2},
        {"standard input in place", "-i -", "a", "", "-i needs the names of files\n", 2},
        {"in another place", "-io out in", "a", "", "-i writes each file in its place", 2},
        {"in place, incomplete", "-i --overwrite in", "a", "", "--overwrite can't", 2},
        {"no value", "-f utf8 -t", "a", "", "-t needs a value\n", 2},
        {"no value of a long option", "--from-code", "a", "", "-f needs a value\n", 2},
        {"wrong in a cluster", "-qc --bom", "a", "", "wrong option -q\n", 2},
        {"wrong at its end", "--bom -cq", "a", "", "wrong option -q\n", 2},
        {"wrong long option", "--bomb", "a", "", "wrong option --bomb\n", 2},
        {"value of an option without", "--list=x", "a", "", "wrong option --list=x\n", 2},
        {"no input", "-f utf8 -t utf8 missing", "a", "", "can't open missing: No such file", 2},
        {"no directory", "-f utf8 -t utf8 -o missing/out", "a", "", "can't write missing/out: No such file", 2},
        {"no space", "-f utf8 -t utf8 -o /dev/full", "a", "", "can't write /dev/full: No space left", 2},
        {"a folder", "-f utf8 -t utf8 /", "", "", "can't read /: Is a directory", 2},
        {"no room beside it", "-f utf8 -t utf8 -o /proc/self/comm", "a", "", "(--overwrite writes it directly)", 2},
        {"overwritten", "-f utf8 -t utf8 -o /proc/self/comm --overwrite", "a", "", "", 0},
    };
    setenv("LANG", "C", 1);
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        Outcome const got = run(split(c.args), c.in);
        EXPECT_EQ(got.code, c.code);
        EXPECT_EQ(got.out, c.out);
        EXPECT_NE(got.err.find(c.err), std::string::npos) << got.err;
        EXPECT_EQ(got.err.empty(), *c.err == 0) << got.err;
    }
    EXPECT_EQ(run({"missing\n\x1B[1m\xC2\xB5\xC2\x9B"}).err,
              "vynconv: can't open missing\\x0A\\x1B[1m\u00B5\\xC2\\x9B: No such file or directory\n");
}

// The first file that the command opens would get the number of a closed descriptor.
TEST_F(Vynconv, StartedWithoutStandardDescriptors) {
    struct Case {
        char const* name;
        std::vector<int> closed;
        char const* args;
        int code;
        std::string err;
        char const* file; // what `out` then holds; null where there must be none
    };
    Case const cases[] = {
        {"input", {0}, "-o out", 2, "vynconv: can't read standard input: Bad file descriptor\n", nullptr},
        {"input by name", {0}, "-o out /dev/stdin", 2, "vynconv: can't read /dev/stdin: Is a directory\n", nullptr},
        {"output", {1}, "", 2, "vynconv: can't write standard output: Bad file descriptor\n", nullptr},
        {"messages", {2}, "-o out", 1, "", "?"},
        {"all", {0, 1, 2}, "-o out", 2, "", nullptr},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        Outcome const got = run(split("-f utf8 -t koi8r "s + c.args), "\u4E00", c.closed);
        EXPECT_EQ(got.code, c.code);
        EXPECT_EQ(got.err, c.err);
        EXPECT_EQ(fs::exists(work("out")), c.file != nullptr);
        EXPECT_EQ(readFile(work("out")), c.file ? c.file : "");
        fs::remove(work("out"));
    }
}

TEST_F(Vynconv, TellsAboutSetsAndItself) {
    std::string const list = run({"-l"}).out;
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 43);
    EXPECT_NE(list.find("20866 VYNCS_KOI8R       KOI8-R\n"), std::string::npos);

    setenv("LANG", "ja_JP.eucJP", 1);
    EXPECT_EQ(run({"--detect"}).out, "VYNCS_EUC_JP (51932) from LANG=ja_JP.eucJP\n");
    EXPECT_EQ(run({"-t", "utf8"}, "\xA4\xA2").out, "\u3042");
    setenv("LANG", "zh_TW.eucTW", 1);
    EXPECT_EQ(run({"-t", "utf8"}).code, 2);
    unsetenv("LANG");
    EXPECT_EQ(run({"--detect"}).out, "VYNCS_ISO_8859_1 (28591) from LC_CTYPE=C\n");

    EXPECT_EQ(run({"--help"}).out.rfind("Usage: vynconv", 0), 0U);
    std::string const version = run({"--version"}).out;
    EXPECT_EQ(version.rfind("vynconv ", 0), 0U);
    EXPECT_NE(version.find(vynulib::instructionSet()), std::string::npos) << version;
}

/// Text with much that some set lacks, in the set, with some bytes spoilt. It begins with no mark.
std::string randomFile(VynCharSet cs, TestRandom& random) {
    char16_t const characters[] = u"a\nU+3\0\u00E9\u0416\u304B\u4E00\uFF71\uFFFD\xD83D\xDE00\xDFFF";
    std::size_t const length = random.below(4) == 0 ? chunkBytes / 2 + random.below(chunkBytes) : random.below(5000);
    std::u16string text = u"a";
    while (text.size() < length)
        text += characters[random.below(std::size(characters) - 1)];
    std::string bytes = vynulib::encode(cs, text, OnError::drop);
    for (unsigned spoilt = random.below(4) == 0 ? 0 : random.below(100); spoilt != 0; --spoilt)
        bytes[4 + random.below(bytes.size() - 4)] = static_cast<char>(random.below(256));
    return bytes;
}

// Through a pipe, which delivers pieces of any size. The library's conversion of the whole text is the measure.
TEST_F(Vynconv, RandomFilesThroughPipes) {
    constexpr std::pair<char const*, OnError> policies[] = {
        {"replace", OnError::replace}, {"escape", OnError::escape}, {"drop", OnError::drop}, {"stop", OnError::stop}};
    VynCharSet const sets[] = {VYNCS_UTF8,  VYNCS_UTF16,    VYNCS_UTF16BE,  VYNCS_UTF16ESC, VYNCS_UTF32,
                               VYNCS_KOI8R, VYNCS_SHIFTJIS, VYNCS_SJIS0213, VYNCS_EUC_JP,   VYNCS_GB18030};
    TestRandom random;
    for (int i = 0; i < 120; ++i) {
        VynCharSet const from = sets[random.below(std::size(sets))], to = sets[random.below(std::size(sets))];
        auto const& [policyName, policy] = policies[random.below(std::size(policies))];
        std::string const bytes = randomFile(from, random);
        SCOPED_TRACE("seed " + std::to_string(random.seed()) + ", text " + std::to_string(i) + ", " + policyName +
                     ", from " + VynCharSetToString(from) + " to " + VynCharSetToString(to));

        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        pid_t const child = start({"-f", std::to_string(from), "-t", std::to_string(to), "--on-error="s + policyName},
                                  ends[0], openOut());
        std::size_t const longest = random.below(2) == 0 ? 100 : 100000;
        for (std::size_t at = 0; at < bytes.size();) {
            ssize_t const written =
                write(ends[1], &bytes[at], std::min(bytes.size() - at, 1UL + random.below(longest)));
            if (written < 0)
                break; // it stopped at a loss
            at += static_cast<std::size_t>(written);
        }
        close(ends[1]);
        Outcome const got = finish(child);

        vynulib::Report report;
        std::string const expected = vynulib::transcode(from, to, bytes, policy, &report);
        EXPECT_EQ(got.code, report.losses == 0 ? 0 : 1);
        EXPECT_TRUE(got.out == expected) << "too long to be printed";
        std::u16string const before = vynulib::decode(from, std::string_view(bytes).substr(0, report.firstLoss));
        std::string const line = std::to_string(std::count(before.begin(), before.end(), u'\n') + 1);
        for (std::string const& part :
             {" "s + std::to_string(report.losses) + " character", " in line " + line + ": bytes ",
              " at offset " + std::to_string(report.firstLoss) + ", not in "})
            EXPECT_EQ(got.err.find(part) == std::string::npos, report.losses == 0) << part << " of " << got.err;
    }
}

TEST_F(Vynconv, EachFileStandsAlone) {
    std::string const message = ": 1 character could not be converted, in line 2: bytes C3 at offset 5, not in UTF-8\n";
    for (char const* const name : {"first", "second"})
        writeFile(work(name), "\uFEFFx\n\xC3");
    Outcome const got = run({"-f", "utf8", "-t", "koi8r", "first", "second"});
    EXPECT_EQ(got.out, "x\n?x\n?");
    EXPECT_EQ(got.err, "vynconv: first" + message + "vynconv: second" + message);
}

TEST_F(Vynconv, TellsEveryLoss) {
    std::string text, expected;
    auto const add = [&](std::string const& line, std::string const& where) {
        expected += "vynconv: standard input: line " + where + '\n';
        text += line;
    };
    for (int line = 1; text.size() < 3 * chunkBytes; line += 2) {
        add("\u4E00\n",
            std::to_string(line) + ": bytes E4 B8 80 at offset " + std::to_string(text.size()) + ", not in KOI8-R");
        add("a\xE4\xB8"
            "b\n",
            std::to_string(line + 1) + ": bytes E4 B8 at offset " + std::to_string(text.size() + 1) + ", not in UTF-8");
    }
    std::string const err = run({"--verbose", "-f", "utf8", "-t", "koi8r"}, text).err;
    std::string const sum = "vynconv: standard input: 174764 characters could not be converted, the first in line 1:";
    ASSERT_NE(err.find(sum), std::string::npos);
    EXPECT_TRUE(err.substr(0, err.find(sum)) == expected) << "too long to be printed";

    EXPECT_EQ(run({"--verbose", "--on-error=stop", "-f", "utf8"}, "a\x80\x80").err,
              "vynconv: standard input: line 1: bytes 80 at offset 1, not in UTF-8\n"
              "vynconv: standard input: 1 character could not be converted, in line 1: bytes 80 at offset 1, not in "
              "UTF-8; stopped there\n");
}

TEST_F(Vynconv, InPlaceEachFileStandsAlone) {
    auto const write = [&] {
        for (auto const& [name, bytes] : {std::pair{"good", "\u0430"}, {"bad", "\u0430\u4E00"}, {"last", "z"}})
            writeFile(work(name), bytes);
    };
    auto const convert = [&](std::string const& options) {
        return run(split("-f utf8 -t koi8r -i " + options + " good missing folder bad last"));
    };
    fs::create_directory(work("folder"));
    std::string const missing = "vynconv: can't open missing: No such file or directory\n"
                                "vynconv: folder is no regular file, it has no place for its text\n";
    std::string const lost =
        "vynconv: bad: 1 character could not be converted, in line 1: bytes E4 B8 80 at offset 2, not in KOI8-R";
    write();
    Outcome const stopped = convert("--on-error=stop");
    EXPECT_EQ(stopped.code, 2);
    EXPECT_EQ(stopped.err, missing + lost + "; stopped there\n");
    EXPECT_EQ(readFile(work("good")) + readFile(work("bad")) + readFile(work("last")), "\xC1\u0430\u4E00z");
    write();
    EXPECT_EQ(convert("-c").err, missing + lost + "\n");
    EXPECT_EQ(readFile(work("good")) + readFile(work("bad")) + readFile(work("last")), "\xC1\xC1z");
    EXPECT_EQ(run(split("-f koi8r -t utf8 -i last bad")).code, 0);
    EXPECT_EQ(run(split("-f utf8 -t utf16 --bom -i bad last")).code, 0);
    EXPECT_EQ(readFile(work("bad")), bytesOf(u"\uFEFF\u0430"s));
    EXPECT_EQ(fileCount(), 4);
}

// The conversion waits for its output to be read.
TEST_F(Vynconv, ShowsOnATerminalHowFarItHasCome) {
    int const terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0)
        GTEST_SKIP() << "there are no terminals here";
    errors = ptsname(terminal);
    writeFile(work("in"), std::string(8 * chunkBytes, 'x'));
    for (auto const& [name, pattern] : {std::pair{"in", R"(in: \d+ % of 2 MiB, \d+ MiB/s, \d+ s left)"},
                                        {"-", R"(standard input: \d+ MiB, \d+ MiB/s\r)"}}) {
        int input[2], output[2];
        ASSERT_EQ(pipe2(input, O_CLOEXEC) | pipe2(output, O_CLOEXEC), 0);
        pid_t const child = start({"-f", "utf8", "-t", "utf8", name}, input[0], output[1]);
        std::this_thread::sleep_for(std::chrono::milliseconds(700));
        EXPECT_EQ(::write(input[1], "a", 1), 1);
        close(input[1]);
        std::string buffer(chunkBytes, 0);
        while (read(output[0], buffer.data(), buffer.size()) > 0) {
        }
        close(output[0]);
        EXPECT_EQ(finish(child).code, 0);
        buffer.resize(static_cast<std::size_t>(read(terminal, buffer.data(), buffer.size())));
        EXPECT_TRUE(std::regex_search(buffer, std::regex(pattern))) << buffer;
        EXPECT_TRUE(buffer.ends_with("\r\033[K")) << buffer;
    }
    close(terminal);
}

TEST_F(Vynconv, MarkByteByByte) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    pid_t const child = start({"-f", "UTF-16", "-t", "utf8"}, ends[0], openOut());
    for (char const byte : "\xFE\xFF\0a"s) {
        EXPECT_EQ(write(ends[1], &byte, 1), 1);
        waitUntilRead(ends[1]);
    }
    close(ends[1]);
    EXPECT_EQ(finish(child).out, "a");
}

TEST_F(Vynconv, OutputIsWholeOrAbsent) {
    std::string const longText(2 * chunkBytes, 'x');
    writeFile(work("good"), "\xC1");
    writeFile(work("bad"), longText + "\u4E00");
    auto const codeOf = [&](std::string const& args) { return run(split(args)).code; };

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
}

TEST_F(Vynconv, OutputThatIsThere) {
    writeFile(work("file"), "\xC1");
    fs::permissions(work("file"), fs::perms(0604));
    fs::create_symlink("file", work("link"));
    fs::create_symlink("link", work("outer"));
    fs::create_symlink("made", work("dangling"));
    fs::create_hard_link(work("file"), work("other"));
    auto const codeOf = [&](std::string const& args) { return run(split("-f koi8r -t utf8 " + args)).code; };

    EXPECT_EQ(codeOf("--overwrite -o outer file"), 2);
    EXPECT_EQ(readFile(work("file")), "\xC1");
    EXPECT_EQ(codeOf("-o outer file link"), 0);
    EXPECT_EQ(readFile(work("file")), "\u0430\u0430");
    EXPECT_EQ(fs::status(work("file")).permissions(), fs::perms(0604));
    EXPECT_TRUE(fs::is_symlink(work("outer")));
    EXPECT_EQ(codeOf("-o dangling file"), 0);
    EXPECT_TRUE(fs::is_regular_file(work("made")));
    EXPECT_EQ(readFile(work("other")), "\xC1");
    EXPECT_EQ(codeOf("--overwrite -o made other"), 0);
    EXPECT_EQ(readFile(work("made")), "\u0430");
    EXPECT_EQ(fileCount(), 6);
}

TEST_F(Vynconv, InputThatGrowsIsRefused) {
    std::string const file = work("file");
    writeFile(file, "a");
    for (auto const& [argument, message] : {std::pair{"file", "file"}, {"-", "standard input"}}) {
        int const out = open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
        Outcome const got = finish(start({"-f", "utf8", argument}, open(file.c_str(), O_RDONLY | O_CLOEXEC), out));
        EXPECT_EQ(got.code, 2);
        EXPECT_EQ(got.err, "vynconv: "s + message + " is the output file as well\n");
        EXPECT_EQ(readFile(file), "a");
    }
}

TEST_F(Vynconv, ClosedPipeEndsItQuietlyUnlessThatIsIgnored) {
    for (bool const ignored : {false, true}) {
        if (ignored)
            sigdelset(&defaultSignals, SIGPIPE);
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        close(ends[0]);
        Outcome const got = finish(start({"-f", "utf8", "-t", "utf8"}, open("/proc/self/cmdline", O_RDONLY), ends[1]));
        EXPECT_EQ(got.code, ignored ? 2 : -SIGPIPE);
        EXPECT_EQ(got.err, ignored ? "vynconv: can't write standard output: Broken pipe\n" : "");
    }
}

constexpr int endingSignals[] = {SIGHUP,  SIGINT,  SIGQUIT,   SIGTERM, SIGALRM, SIGUSR1, SIGUSR2,
                                 SIGPIPE, SIGPROF, SIGVTALRM, SIGXCPU, SIGIO,   SIGPWR,  SIGABRT};

TEST_F(Vynconv, SignalsRemoveTheTemporaryFile) {
    for (int const signal : endingSignals) {
        SCOPED_TRACE(strsignal(signal));
        int input;
        pid_t const child = startReading({"-f", "utf8", "-t", "utf8", "-o", "out"}, "a", input);
        EXPECT_EQ(fileCount(), 1);
        kill(child, signal);
        EXPECT_EQ(finish(child).code, -signal);
        EXPECT_EQ(fileCount(), 0);
        close(input);
    }
}

TEST_F(Vynconv, SignalsIgnoredAtItsStartStayIgnored) {
    sigemptyset(&defaultSignals);
    for (int const signal : endingSignals)
        std::signal(signal, SIG_IGN);
    int input;
    pid_t const child = startReading({"-f", "utf8", "-t", "utf8", "-o", "out"}, "a", input);
    for (int const signal : endingSignals) {
        kill(child, signal);
        if (signal != SIGPIPE)
            std::signal(signal, SIG_DFL);
    }
    close(input);
    EXPECT_EQ(finish(child).code, 0);
    EXPECT_EQ(readFile(work("out")), "a");
}

// From its first instruction to its last one. The output is whole or what it was, and stands alone.
TEST_F(Vynconv, KilledAtAnyMoment) {
    using Clock = std::chrono::steady_clock;
    std::string text;
    while (text.size() < 4 * chunkBytes)
        text += "\u0436\u4E00a\n";
    writeFile(work("in"), text);
    std::string const whole = vynulib::transcode(VYNCS_UTF8, VYNCS_UTF16, text);
    Words const args = {"-f", "utf8", "-t", "utf16", "-o", "out", "in"};
    auto const begin = Clock::now();
    EXPECT_EQ(run(args).code, 0);
    auto const duration = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);

    TestRandom random;
    int killed = 0;
    auto const end = begin + std::chrono::seconds(5); // a slow machine does fewer
    for (int round = 0; round < 100 && Clock::now() < end; ++round) {
        int const signal = endingSignals[random.below(std::size(endingSignals))];
        writeFile(work("out"), "old");
        pid_t const child = start(args, open("/dev/null", O_RDONLY | O_CLOEXEC), openOut());
        std::chrono::microseconds const delay(random.below(static_cast<unsigned long>(duration.count())));
        std::this_thread::sleep_for(delay);
        kill(child, signal);
        auto const [code, nothing, err] = finish(child);
        SCOPED_TRACE(std::string(strsignal(signal)) + " after " + std::to_string(delay.count()) + " us");
        killed += code == -signal;
        EXPECT_TRUE(code == 0 || code == -signal) << code << err;
        std::string const out = readFile(work("out"));
        EXPECT_TRUE(out == whole || (out == "old" && code != 0)) << out.size() << " bytes";
        EXPECT_EQ(fileCount(), 2);
    }
    EXPECT_GT(killed, 0);
}

TEST_F(Vynconv, FileThatGrowsTooLarge) {
    struct Case {
        char const* options;
        char const* before; // what `out` holds; null where there is none
        std::size_t after;  // bytes that it then has
    };
    writeFile(work("in"), std::string(5000, 'a'));
    for (auto const& [options, before, after] : {Case{"", nullptr, 0}, {"", "old", 3}, {"--overwrite ", "old", 4096}}) {
        SCOPED_TRACE(options);
        if (before)
            writeFile(work("out"), before);
        rlimit old;
        getrlimit(RLIMIT_FSIZE, &old);
        rlimit const limit{4096, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        pid_t const child =
            start(split("-f utf8 -t utf8 "s + options + "-o out in"), open("/dev/null", O_RDONLY), openOut());
        setrlimit(RLIMIT_FSIZE, &old);
        Outcome const got = finish(child);
        EXPECT_EQ(got.code, 2);
        EXPECT_EQ(got.err, "vynconv: can't write out: File too large\n");
        EXPECT_EQ(readFile(work("out")).size(), after);
        EXPECT_EQ(fileCount(), before ? 2 : 1);
    }
}

// Standard input, which is a FIFO here, is the first of two inputs: what happens comes between them.
TEST_F(Vynconv, FilesThatChangeMeanwhile) {
    struct Case {
        char const* name;
        std::function<void()> change;
        int code;
        char const* err;
        char const* out; // "" where it is no file
    };
    fs::path const second = work("second"), out = work("out");
    Case const cases[] = {
        {"nothing", [] {}, 0, "", "ab"},
        {"input vanishes", [&] { fs::remove(second); }, 2, "can't open second: No such file or directory\n", "old"},
        {"input becomes a folder", [&] { fs::remove(second), fs::create_directory(second); }, 2,
         "can't read second: Is a directory\n", "old"},
        {"output becomes a folder", [&] { fs::remove(out), fs::create_directory(out); }, 2,
         "can't write out: Is a directory\n", ""},
        {"output vanishes", [&] { fs::remove(out); }, 0, "", "ab"},
    };
    ASSERT_EQ(mkfifo(work("fifo").c_str(), 0600), 0);
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        fs::remove_all(out), fs::remove_all(second);
        writeFile(out, "old");
        writeFile(second, "b");
        int const fifo = open(work("fifo").c_str(), O_RDWR | O_CLOEXEC);
        ASSERT_EQ(write(fifo, "a", 1), 1);
        pid_t const child =
            start(split("-f utf8 -t utf8 -o out fifo second"), open("/dev/null", O_RDONLY | O_CLOEXEC), openOut());
        waitUntilRead(fifo);
        c.change();
        close(fifo);
        Outcome const got = finish(child);
        EXPECT_EQ(got.code, c.code);
        EXPECT_EQ(got.err, *c.err ? "vynconv: "s + c.err : "");
        EXPECT_EQ(readFile(out), c.out);
        fs::remove_all(out), fs::remove_all(second);
        EXPECT_EQ(fileCount(), 1) << "a temporary file is left";
    }
}

// Root may do everything, so it becomes somebody else.
TEST_F(Vynconv, FilesWithoutRights) {
    fs::permissions(dir, fs::perms(0755));
    fs::permissions(work(), fs::perms(0777));
    if (geteuid() == 0)
        launcher = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--"};
    if (run({"--version"}).code != 0)
        GTEST_SKIP() << "the command can't be run by somebody else than root";
    for (char const* const name : {"locked", "secret"})
        fs::create_directory(work(name));
    for (auto const& [name, mode] : {std::pair{"locked/old", 0666}, {"secret/in", 0666}, {"kept", 0444}}) {
        writeFile(work(name), "old");
        fs::permissions(work(name), fs::perms(mode));
    }
    fs::permissions(work("locked"), fs::perms(0555));
    fs::permissions(work("secret"), fs::perms(0));

    constexpr std::pair<char const*, char const*> cases[] = {
        {"secret/in", "can't open secret/in"},
        {"-o secret/out -", "can't write secret/out"},
        {"-o locked/new -", "can't write locked/new"},
        {"-o locked/old -",
         "can't write locked/old by way of a temporary file beside it (--overwrite writes it directly)"},
        {"-o kept -", "can't write kept"},
        {"--overwrite -o kept -", "can't write kept"},
    };
    for (auto const& [args, err] : cases) {
        Outcome const got = run(split("-f utf8 -t utf8 "s + args), "new");
        EXPECT_EQ(got.code, 2) << args;
        EXPECT_EQ(got.err, "vynconv: "s + err + ": Permission denied\n");
    }
    EXPECT_EQ(readFile(work("kept")), "old");
    EXPECT_EQ(readFile(work("locked/old")), "old");
    EXPECT_EQ(run(split("-f utf8 -t utf8 --overwrite -o locked/old -"), "new").code, 0);
    EXPECT_EQ(readFile(work("locked/old")), "new");
    EXPECT_EQ(fileCount(), 3);
    for (char const* const name : {"locked", "secret"})
        fs::permissions(work(name), fs::perms(0755));
}

} // namespace
