#include "tests/string/StringTestKit.h"

#include <iomanip>
#include <istream>
#include <pthread.h>
#include <sstream>
#include <thread>

namespace {

constexpr auto fail = std::ios_base::failbit;

std::istream& read(std::istream& in, VynUString& text, bool line) {
    return line ? getline(in, text) : in >> text;
}

// A buffer of two bytes, after which an exception or the end of the thread comes.
struct BreakingBuffer : std::streambuf {
    explicit BreakingBuffer(bool endThread) : endsThread(endThread) { setg(bytes, bytes, bytes + 2); }
    int_type underflow() override { return endsThread ? (pthread_exit(nullptr), 0) : throw 1; }

    char bytes[3] = "ab";
    bool endsThread;
};

TEST(VynUStringStreams, ABufferThatThrowsOrIsMissingIsAFailureThatDiscardsAll) {
    for (bool const line : {false, true}) {
        BreakingBuffer buffer(false);
        std::istream in(&buffer), without(nullptr);
        in.width(10);
        VynUString text("old"), unread("old");
        EXPECT_EQ(read(in, text, line).rdstate(), fail);
        EXPECT_TRUE(text.empty());
        EXPECT_EQ(read(without, unread, line).rdstate(), fail | std::ios_base::eofbit | std::ios_base::badbit);
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
