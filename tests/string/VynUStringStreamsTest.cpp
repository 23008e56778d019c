#include "tests/string/StringTestKit.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <istream>
#include <iterator>
#include <pthread.h>
#include <sstream>
#include <thread>

namespace {

using namespace std::string_literals;

constexpr auto good = std::ios_base::goodbit, eof = std::ios_base::eofbit, fail = std::ios_base::failbit;
constexpr int word = -2, line = -1; // how to read, or the delimiter of a line

std::istream& read(std::istream& in, VynUString& text, int how) {
    return how == word ? in >> text : how == line ? getline(in, text) : getline(in, text, static_cast<char>(how));
}

TEST(VynUStringStreams, ReadersStoreStopAndReportAsStated) {
    struct {
        std::string input;
        int how, width;
        std::string stored;
        std::ios_base::iostate state;
        std::string rest;
    } const rows[] = {{"\t\v\f\r a b", word, 0, "a", good, " b"}, {"ab\ncd", line, 0, "ab\ncd", eof, ""},
                      {"\n abc", word, 0, "abc", eof, ""},        {" ab\r", line, 0, " ab", good, ""},
                      {"  ", word, 0, "", eof | fail, ""},        {"\rcd", line, 0, "", fail, "cd"},
                      {"  abc", word, 4, "abc", good, ""},        {"ab\ncd", '\n', 3, "ab", good, "\ncd"},
                      {"  abc", word, 1, "", fail, "  abc"},      {"ab\ncd", '\n', 1, "", fail, "ab\ncd"},
                      {"  abc", word, -5, "abc", eof, ""},        {"ab\ncd", '\n', 0, "ab", good, "cd"},
                      {"a\xFF b", word, 0, "a", eof, "\xFF b"},   {"ab\xFFz", 0xFF, 0, "ab", eof, "\xFFz"},
                      {"\xA0 b", word, 0, "\xA0", good, " b"},    {"a\xE9z", 0xE9, 0, "a", good, "z"},
                      {"\0 c"s, word, 0, "", good, " c"},         {"", line, 0, "", eof | fail, ""}};
    for (auto const& row : rows)
        for (std::ios_base::iostate const before : {good, fail, eof | std::ios_base::badbit}) {
            SCOPED_TRACE(&row - rows);
            std::istringstream in(row.input);
            in.setstate(before);
            in.width(row.width);
            VynUString text("old");
            EXPECT_EQ(read(in, text, row.how).rdstate(), before | row.state);
            EXPECT_EQ(textOf(text), textOf(VynUString(row.stored.c_str())));
            EXPECT_EQ(in.width(), 0);
            EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in.rdbuf()), {}), row.rest);
        }
}

// A buffer of some bytes, behind which an exception or the end of the thread comes.
struct BreakingBuffer : std::streambuf {
    BreakingBuffer(std::string const& text, bool endsThread) : m_bytes(text), m_endsThread(endsThread) {
        setg(m_bytes.data(), m_bytes.data(), m_bytes.data() + m_bytes.size());
    }
    int_type underflow() override { return m_endsThread ? (pthread_exit(nullptr), 0) : throw 1; }

    std::string m_bytes;
    bool m_endsThread;
};

TEST(VynUStringStreams, ABufferThatThrowsIsAFailureThatDiscardsAll) {
    for (int const how : {word, line})
        for (char const* const bytes : {"", "ab"}) {
            BreakingBuffer buffer(bytes, false);
            std::istream in(&buffer), without(nullptr);
            in.width(10);
            VynUString text("old"), none("old");
            EXPECT_TRUE(read(in, text, how).rdstate() == fail && in.width() == 0 && text.empty());
            EXPECT_TRUE(read(without, none, how).eof() && without.fail() && none.empty());
        }
}

TEST(VynUStringStreams, TheEndOfAThreadPassesThroughAReader) {
    bool returned = false;
    std::thread([&] {
        BreakingBuffer buffer("ab", true);
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
