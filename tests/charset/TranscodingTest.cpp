#include "tests/support/ServedSets.h"

#include <vynulib/Transcoding.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <vector>

namespace vynulib {

static bool operator==(Progress const& a, Progress const& b) {
    return a.status == b.status && a.read == b.read && a.written == b.written && a.length == b.length;
}
static void PrintTo(Progress const& progress, std::ostream* out) {
    constexpr char const* names[] = {"done", "roomFull", "unconvertible"};
    *out << names[static_cast<int>(progress.status)] << " read " << progress.read << " written " << progress.written
         << " length " << progress.length;
}
static bool operator==(Report const& a, Report const& b) {
    return a.losses == b.losses && a.firstLoss == b.firstLoss;
}
static void PrintTo(Report const& report, std::ostream* out) {
    *out << report.losses << " losses, the first at " << report.firstLoss;
}

} // namespace vynulib

namespace {

using namespace std::string_literals;
using vynulib::OnError;
using vynulib::Progress;
using vynulib::Report;
using vynulib::Status;
using Units = std::u16string;

constexpr auto npos = std::string_view::npos;

class TranscodingSets : public testing::TestWithParam<VynCharSet> {
protected:
    VynCharSet const cs = GetParam();
};

TEST_P(TranscodingSets, DecodeReadsWhatEncodeWrites) {
    for (unsigned scalar = 0; scalar < 0x110000; scalar += scalar < 0x30000 ? 1 : 0x101) {
        Units const one = scalar > 0xFFFF ? Units{static_cast<char16_t>((scalar >> 10) + 0xD7C0),
                                                  static_cast<char16_t>(0xDC00 + scalar % 0x400)}
                                          : Units(1, static_cast<char16_t>(scalar));
        char bytes[16];
        Progress const encoded = vynulib::encode(cs, one, bytes, sizeof bytes, true);
        if (encoded.status != Status::done) {
            ASSERT_EQ(encoded, (Progress{Status::unconvertible, 0, 0, one.size()})) << scalar;
            continue;
        }
        char16_t units[16];
        Progress const decoded = vynulib::decode(cs, {bytes, encoded.written}, units, 16, true);
        ASSERT_EQ(decoded, (Progress{Status::done, encoded.written, one.size(), 0})) << scalar;
        ASSERT_EQ(Units(units, decoded.written), one) << scalar;
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, TranscodingSets, testing::ValuesIn(servedSets()),
                         [](auto const& test) { return std::to_string(test.param); });

TEST(Transcoding, TakesTheNamedSequences) {
    struct Row {
        VynCharSet cs;
        std::string bytes;
        bool last;
        Progress expected; // of what is left after the characters before
    };
    auto const lost = [](std::size_t read, std::size_t written, std::size_t length) {
        return Progress{Status::unconvertible, read, written, length};
    };
    auto const done = [](std::size_t read, std::size_t written) { return Progress{Status::done, read, written, 0}; };
    Row const rows[] = {
        {VYNCS_UTF8, "\xF0\x9F\x92"s + "A", true, lost(0, 0, 3)},
        {VYNCS_UTF8, "\xF0\x9F\x92", true, lost(0, 0, 3)},
        {VYNCS_UTF8, "\xF0\x9F\x92", false, done(0, 0)},
        {VYNCS_UTF8, "\xC0\xAF", true, lost(0, 0, 1)},
        {VYNCS_UTF8, "a\0\xEF\xBB\xBF"s, true, done(5, 3)},
        {VYNCS_UTF16, "\x00\xD8"s + "A\0"s, true, lost(0, 0, 2)},
        {VYNCS_UTF16, "\x00\xD8\x41"s, false, done(0, 0)},
        {VYNCS_UTF16, "\x00\xDC"s, false, lost(0, 0, 2)},
        {VYNCS_UTF16, "A\0B"s, true, lost(2, 1, 1)},
        {VYNCS_UTF16, "A\0B"s, false, done(2, 1)},
        {VYNCS_UTF16BE, "\0A\xD8\x3D\xDE\0"s, true, done(6, 3)},
        {VYNCS_UTF32, "A\0\0\0B\0\0"s, true, lost(4, 1, 3)},
        {VYNCS_UTF32BE, "\0\1\xF6\0"s, true, done(4, 2)},
        {VYNCS_UTF16ESC, "U+00E", false, done(0, 0)},
        {VYNCS_UTF16ESC, "U+00E", true, done(5, 5)},
        {VYNCS_UTF16ESC, "U+D800x", true, done(7, 2)},
        {VYNCS_UTF16ESC, "a\x80", true, lost(1, 1, 1)},
        {VYNCS_EUC_JP, "\xA4\x22", true, lost(0, 0, 1)},
        {VYNCS_EUC_JP, "\x7F", false, done(0, 0)},
        {VYNCS_EUC_JP, "\x8F\x41", false, lost(0, 0, 1)},
        {VYNCS_EUC_JP, "\x8F\xB0", false, done(0, 0)},
        {VYNCS_EUC_JP, "\x80\xDC", true, done(2, 1)},
        {VYNCS_WCP936, "\x81\x81", true, done(2, 1)}, // its converter encodes it and does not decode it
        {VYNCS_WCP932, "\x81", false, done(0, 0)},
        {VYNCS_WCP932, "\x81", true, lost(0, 0, 1)},
        {VYNCS_WCP932, "\x87\x40", true, lost(0, 0, 2)},
        {VYNCS_GB18030, "\x81\x30\x81", false, done(0, 0)},
        {VYNCS_GB18030, "\x81\x30\x41", false, lost(0, 0, 1)},
        {VYNCS_GB18030, "\x84\x31\xA5\x30", true, lost(0, 0, 4)},
    };
    for (Row const& row : rows) {
        char16_t units[16];
        EXPECT_EQ(vynulib::decode(row.cs, row.bytes, units, 16, row.last), row.expected)
            << row.cs << ' ' << testing::PrintToString(row.bytes);
    }
}

// The examples in the Unicode standard, in "U+FFFD Substitution of Maximal Subparts".
TEST(Transcoding, ReplacesMaximalSubparts) {
    std::pair<char const*, char16_t const*> const rows[] = {
        {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64", u"a???b?c??d"},
        {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", u"????????A"},
        {"\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", u"????????A"},
        {"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", u"?????A??B"},
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", u"????A"},
    };
    for (auto const& [bytes, expected] : rows) {
        Units units = expected;
        std::ranges::replace(units, u'?', u'\uFFFD');
        EXPECT_EQ(vynulib::decode(VYNCS_UTF8, bytes), units) << testing::PrintToString(bytes);
    }
}

TEST(Transcoding, LooksAtWhatFollowsAFullRoom) {
    char16_t units[2];
    char bytes[4];
    struct {
        std::string source;
        bool last;
        Progress expected;
    } const decoded[] = {{"A", true, {Status::roomFull, 0, 0, 0}},
                         {"\x80", true, {Status::unconvertible, 0, 0, 1}},
                         {"\xC3", false, {Status::done, 0, 0, 0}},
                         {"", true, {Status::done, 0, 0, 0}}};
    for (auto const& [source, last, expected] : decoded)
        EXPECT_EQ(vynulib::decode(VYNCS_UTF8, source, units, 0, last), expected) << source;
    EXPECT_EQ(vynulib::decode(VYNCS_UTF8, "\xF0\x9F\x98\x80", units, 1, true), (Progress{Status::roomFull, 0, 0, 0}));
    struct {
        Units source;
        bool last;
        Progress expected;
    } const encoded[] = {{u"\u3042", true, {Status::roomFull, 0, 0, 0}},
                         {{0xDC00}, true, {Status::unconvertible, 0, 0, 1}},
                         {{0xD800}, true, {Status::unconvertible, 0, 0, 1}},
                         {{0xD800}, false, {Status::done, 0, 0, 0}},
                         {{0xD83D, 0xDE00}, true, {Status::roomFull, 0, 0, 0}}};
    for (auto const& [source, last, expected] : encoded)
        EXPECT_EQ(vynulib::encode(VYNCS_UTF8, source, bytes, 2, last), expected);
    EXPECT_EQ(vynulib::encode(VYNCS_KOI8R, u"\U0001F600", bytes, 4, true), (Progress{Status::unconvertible, 0, 0, 2}));
}

TEST(Transcoding, WritesNoHalfOfACharacter) {
    char dst[12];
    for (std::size_t room = 0; room <= std::size(dst); ++room) {
        Progress const done = vynulib::transcode(VYNCS_UTF8, VYNCS_UTF16ESC, "\U0001F600", dst, room, true);
        bool const fits = room == std::size(dst);
        EXPECT_EQ(done.status, fits ? Status::done : Status::roomFull) << room;
        EXPECT_EQ(done.read, fits ? 4U : 0U) << room;
        EXPECT_EQ(done.written, fits ? 12U : 0U) << room;
    }
}

TEST(Transcoding, DoesWithALossWhatIsAskedFor) {
    struct {
        VynCharSet from, to;
        std::string source;
        OnError onError;
        std::string result;
        Report report;
    } const rows[] = {
        {VYNCS_UTF8, VYNCS_KOI8R, "a\xE6\x97\xA5z", OnError::replace, "a?z", {1, 1}},
        {VYNCS_UTF8, VYNCS_KOI8R, "a\xF0\x9F\x98\x80z", OnError::escape, "aU+D83DU+DE00z", {1, 1}},
        {VYNCS_UTF8, VYNCS_KOI8R, "a\xFFz\xE6\x97\xA5", OnError::replace, "a?z?", {2, 1}},
        {VYNCS_UTF8, VYNCS_KOI8R, "a\xFFz", OnError::escape, "a?z", {1, 1}},
        {VYNCS_UTF8, VYNCS_KOI8R, "\xEF\xBF\xBD", OnError::escape, "U+FFFD", {1, 0}}, // the character itself
        {VYNCS_UTF8, VYNCS_KOI8R, "ab\xE6\x97\xA5", OnError::stop, "ab", {1, 2}},
        {VYNCS_UTF8, VYNCS_GB18030, "\xFF", OnError::replace, "?", {1, 0}},
        {VYNCS_UTF8, VYNCS_UTF16BE, "\xFF", OnError::replace, "\xFF\xFD", {1, 0}},
        {VYNCS_UTF16ESC,
         VYNCS_UTF32BE,
         "U+D800",
         OnError::escape,
         "\0\0\0U\0\0\0+\0\0\0D\0\0\0008\0\0\0000\0\0\0000"s,
         {1, 0}},
        {VYNCS_UTF16ESC, VYNCS_UTF8, "U+D83DU+DE00", OnError::stop, "\xF0\x9F\x98\x80", {0, npos}},
        // A high surrogate that ends a piece of 2,048 units.
        {VYNCS_UTF16ESC,
         VYNCS_UTF8,
         std::string(2047, 'a') + "U+D800x",
         OnError::drop,
         std::string(2047, 'a') + "x",
         {1, 2047}},
        // What is dropped still separates the halves of a pair.
        {VYNCS_UTF16ESC, VYNCS_UTF8, "U+D83D\x80U+DE00", OnError::drop, "", {3, 0}},
    };
    for (auto const& row : rows) {
        Report report;
        EXPECT_EQ(vynulib::transcode(row.from, row.to, row.source, row.onError, &report), row.result) << row.source;
        EXPECT_EQ(report, row.report) << row.source;
    }
    EXPECT_EQ(vynulib::decode(VYNCS_UTF8, "a\xFFz", OnError::escape), u"a\uFFFDz");
    EXPECT_EQ(vynulib::encode(VYNCS_UTF8, Units{u'a', 0xD800}, OnError::replace), "a\xEF\xBF\xBD");
}

TEST(Transcoding, RefusesSetsThatAreNotServed) {
    for (int const number : {0, -1, 28602, 50220, 51950}) {
        auto const cs = VynCharSet(number);
        EXPECT_THROW(vynulib::decode(cs, "a"), std::invalid_argument) << number;
        EXPECT_THROW(vynulib::encode(cs, u"a"), std::invalid_argument) << number;
        EXPECT_THROW(vynulib::transcode(VYNCS_UTF8, cs, "a"), std::invalid_argument) << number;
        EXPECT_THROW(vynulib::isValid(cs, ""), std::invalid_argument) << number;
        EXPECT_THROW(vynulib::maxUnits(cs, 1), std::invalid_argument) << number;
        EXPECT_THROW(vynulib::maxBytes(cs, 1), std::invalid_argument) << number;
    }
    EXPECT_EQ(vynulib::decode(VYNCS_OS_DEFAULT, "a"), u"a");
    EXPECT_EQ(vynulib::maxBytes(VYNCS_UTF8, npos / 2), npos);
}

} // namespace
