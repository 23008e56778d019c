#include "tests/string/StringTestKit.h"

#include <gtest/gtest.h>

#include <functional>
#include <iomanip>
#include <istream>
#include <limits>
#include <pthread.h>
#include <sstream>

namespace {

using namespace std::string_literals;

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();
constexpr auto good = std::ios_base::goodbit, eof = std::ios_base::eofbit, fail = std::ios_base::failbit;

// A buffer that knows how far its bytes were looked at, and that can break off with an action of the test.
class WatchedBuffer : public std::streambuf {
public:
    explicit WatchedBuffer(std::string bytes, std::size_t breakAt = never, std::function<void()> onBreak = {})
        : m_bytes(std::move(bytes)), m_breakAt(breakAt), m_onBreak(std::move(onBreak)) {}

    std::size_t lookedAt() const { return m_lookedAt; }
    std::string rest() const { return m_bytes.substr(m_next); }

protected:
    int_type underflow() override {
        if (m_next == m_breakAt)
            m_onBreak();
        m_lookedAt = m_next + 1;
        return m_next < m_bytes.size() ? traits_type::to_int_type(m_bytes[m_next]) : traits_type::eof();
    }
    int_type uflow() override {
        int_type const byte = underflow();
        m_next += m_next < m_bytes.size();
        return byte;
    }

private:
    std::string m_bytes;
    std::size_t m_breakAt;
    std::function<void()> m_onBreak;
    std::size_t m_next = 0, m_lookedAt = 0;
};

using Reader = std::function<void(std::istream&, VynUString&)>;

void readWord(std::istream& in, VynUString& text) {
    in >> text;
}
void readLine(std::istream& in, VynUString& text) {
    getline(in, text);
}
Reader lineUpTo(char delimiter) {
    return [delimiter](std::istream& in, VynUString& text) { getline(in, text, delimiter); };
}

TEST(VynUStringStreams, ReadersStoreStopAndReportAsStated) {
    struct {
        std::string input;
        Reader read;
        int width;
        std::string stored;
        std::ios_base::iostate state;
        std::string rest;
        std::size_t lookedAt;
    } const rows[] = {
        {"  ab cd", readWord, 0, "ab", good, " cd", 5},
        {"\t\n\v\f\r ab", readWord, 0, "ab", eof, "", 9},
        {"", readWord, 0, "", eof | fail, "", 1},
        {"  ", readWord, 0, "", eof | fail, "", 3},
        {"abcdef", readWord, 4, "abc", good, "def", 3},
        {"  abc", readWord, 4, "abc", good, "", 5}, // the end behind the limit is not noticed
        {" a", readWord, 1, "", fail, " a", 0},
        {" a", readWord, -5, "a", eof, "", 3},
        {"a\xFF b", readWord, 0, "a", eof, "\xFF b", 2},
        {"\xFF", readWord, 0, "", eof | fail, "\xFF", 1},
        {"\xA0\x85 b", readWord, 0, "\xA0\x85", good, " b", 3}, // no white space in the C locale
        {"a\0b c"s, readWord, 0, "a", good, " c", 4},
        {"\0 c"s, readWord, 0, "", good, " c", 2}, // a byte was stored, though it ends the text
        {"ab\ncd", readLine, 0, "ab\ncd", eof, "", 6},
        {" ab\rcd", readLine, 0, " ab", good, "cd", 4},
        {"\rcd", readLine, 0, "", fail, "cd", 1},
        {"", readLine, 0, "", eof | fail, "", 1},
        {"ab\ncd", lineUpTo('\n'), 0, "ab", good, "cd", 3},
        {"ab\ncd", lineUpTo('\n'), 3, "ab", good, "\ncd", 2},
        {"ab\ncd", lineUpTo('\n'), 1, "", fail, "ab\ncd", 0},
        {"ab\xFFz", lineUpTo('\xFF'), 0, "ab", eof, "\xFFz", 3},
        {"a\xE9z", lineUpTo('\xE9'), 0, "a", good, "z", 2},
        {std::string(100'000, 'x') + "\r", readLine, 0, std::string(100'000, 'x'), good, "", 100'001},
    };
    for (auto const& row : rows)
        for (std::ios_base::iostate const before : {good, fail, eof | std::ios_base::badbit}) {
            SCOPED_TRACE(row.input.substr(0, 20) + ", width " + std::to_string(row.width));
            WatchedBuffer buffer(row.input);
            std::istream in(&buffer);
            in.setstate(before);
            in.width(row.width);
            VynUString text("old");
            row.read(in, text);
            EXPECT_EQ(textOf(text), textOf(VynUString(row.stored.c_str())));
            EXPECT_EQ(in.rdstate(), before | row.state);
            EXPECT_EQ(in.width(), 0);
            EXPECT_EQ(buffer.rest(), row.rest);
            EXPECT_EQ(buffer.lookedAt(), row.lookedAt);
        }
}

TEST(VynUStringStreams, ABufferThatThrowsIsAFailureThatDiscardsAll) {
    std::function<void()> const breaks[] = {[] { throw std::runtime_error("lost"); }, [] { throw 1; }};
    for (Reader const& read : {Reader(readWord), Reader(readLine)})
        for (auto const& onBreak : breaks)
            for (unsigned long breakAt : {0UL, 2UL}) {
                WatchedBuffer buffer("abcd", breakAt, onBreak);
                std::istream in(&buffer);
                in.width(10);
                VynUString text("old");
                EXPECT_NO_THROW(read(in, text));
                EXPECT_TRUE(text.empty());
                EXPECT_EQ(in.rdstate(), fail);
                EXPECT_EQ(in.width(), 0);
            }
    std::istream withoutBuffer(nullptr);
    VynUString text("old");
    withoutBuffer >> text;
    EXPECT_TRUE(text.empty() && withoutBuffer.eof() && withoutBuffer.fail());
}

TEST(VynUStringStreams, TheEndOfAThreadPassesThroughAReader) {
    static int const endedInBuffer = 0;
    auto const readUntilEnded = [](void*) -> void* {
        WatchedBuffer buffer("abcd", 2, [] { pthread_exit(const_cast<int*>(&endedInBuffer)); });
        std::istream in(&buffer);
        VynUString text;
        in >> text;
        return nullptr;
    };
    pthread_t thread;
    void* result = nullptr;
    ASSERT_EQ(pthread_create(&thread, nullptr, readUntilEnded, nullptr), 0);
    ASSERT_EQ(pthread_join(thread, &result), 0);
    EXPECT_EQ(result, &endedInBuffer);
}

TEST(VynUStringStreams, WritesUpToTheFirstZeroUnitWithWidthAndFill) {
    VynUString text = makeString(u"ab\0c"s);
    char const* const cached = text.c_str(VYNCS_UTF32);
    std::ostringstream out;
    out << std::setfill('*') << std::setw(5) << text << '|' << std::left << std::setw(3) << text << VynUString()
        << text;
    EXPECT_EQ(out.str(), "***ab|ab*ab");
    EXPECT_EQ(text.c_str(VYNCS_UTF32), cached);
}

} // namespace
