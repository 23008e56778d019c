#include "tests/string/StringTestKit.h"

#include <iomanip>
#include <istream>
#include <iterator>
#include <pthread.h>
#include <sstream>
#include <thread>

namespace {

constexpr auto good = std::ios_base::goodbit, eof = std::ios_base::eofbit, fail = std::ios_base::failbit,
               none = eof | fail;
constexpr int word = -2, line = -1; // how to read, or the delimiter of a line

std::istream& read(std::istream& in, VynUString& text, int how) {
    return how == word ? in >> text : how == line ? getline(in, text) : getline(in, text, static_cast<char>(how));
}

struct FlushCounter : std::streambuf {
    int sync() override { return ++flushes, 0; }
    int flushes = 0;
};

TEST(VynUStringStreams, ReadersStoreStopAndReportAsStated) {
    struct {
        char const* name;
        std::string input;
        int how, width;
        std::string stored;
        std::ios_base::iostate state;
        std::string rest;
    } const rows[] = {{"word", "\t\v\f\r a b", word, 0, "a", good, " b"},
                      {"no word", "  ", word, 0, "", none, ""},
                      {"word of width", "  abc", word, 4, "abc", good, ""},
                      {"word of no width", "  abc", word, 1, "", fail, "  abc"},
                      {"word of negative width", "  abc", word, -5, "abc", eof, ""},
                      {"word up to 0xFF", "a\xFF b", word, 0, "a", eof, "\xFF b"},
                      {"word of a zero byte", "\0 c"s, word, 0, "", good, " c"},
                      {"line", " a\nb\r", line, 0, " a\nb", good, ""},
                      {"empty line", "\rcd", line, 0, "", fail, "cd"},
                      {"line of width", "ab\nc", '\n', 3, "ab", good, "\nc"},
                      {"line up to 0xFF", "a\xFFz", 0xFF, 0, "a", eof, "\xFFz"},
                      {"line up to a high byte", "a\xE9z", 0xE9, 0, "a", good, "z"}};
    for (auto const& row : rows)
        for (std::ios_base::iostate const before : {good, fail, eof | std::ios_base::badbit}) {
            SCOPED_TRACE(row.name);
            FlushCounter counter;
            std::ostream tied(&counter);
            std::istringstream in(row.input);
            in.tie(&tied);
            in.setstate(before);
            in.width(row.width);
            VynUString text("old");
            EXPECT_EQ(read(in, text, row.how).rdstate(), before | row.state);
            EXPECT_EQ(textOf(text), textOf(VynUString(row.stored.c_str())));
            EXPECT_EQ(in.width(), 0);
            EXPECT_EQ(counter.flushes, 1);
            EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in.rdbuf()), {}), row.rest);
        }
}

// A buffer of two bytes, after which an exception or the end of the thread comes.
struct BreakingBuffer : std::streambuf {
    explicit BreakingBuffer(bool endThread) : endsThread(endThread) { setg(bytes, bytes, bytes + 2); }
    int_type underflow() override { return endsThread ? (pthread_exit(nullptr), 0) : throw 1; }

    char bytes[3] = "ab";
    bool endsThread;
};

TEST(VynUStringStreams, ABufferThatThrowsOrIsMissingIsAFailureThatDiscardsAll) {
    for (int const how : {word, line}) {
        BreakingBuffer buffer(false);
        std::istream in(&buffer), without(nullptr);
        in.width(10);
        VynUString text("old"), unread("old");
        EXPECT_EQ(read(in, text, how).rdstate(), fail);
        EXPECT_TRUE(text.empty());
        EXPECT_EQ(read(without, unread, how).rdstate(), none | std::ios_base::badbit);
        EXPECT_TRUE(unread.empty());
    }
}

TEST(VynUStringStreams, TheEndOfAThreadPassesThroughAReader) {
    bool returned = false;
    std::thread([&] {
        BreakingBuffer buffer(true);
        std::istream in(&buffer);
        VynUString text;
        in >> text;
        returned = true;
    }).join();
    EXPECT_FALSE(returned);
}

TEST(VynUStringStreams, WritesUpToTheFirstZeroUnitWithWidthAndFill) {
    VynUString text = makeString(u"ab\0c"s);
    text.at_utf32(0) = 'Q'; // only in the cached bytes
    std::ostringstream out;
    out << std::setfill('*') << std::setw(5) << text << '|' << std::left << std::setw(3) << text << VynUString();
    EXPECT_EQ(out.str(), "***ab|ab*");
    EXPECT_EQ(text.at_utf32(0), u'Q');
}

} // namespace
