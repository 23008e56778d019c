// Case, order and search.

#include "tests/string/StringTestKit.h"

#include <vynulib/VynUChar.h>

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace std::string_literals;

constexpr unsigned long npos = VynUString::npos;

TEST(VynUStringSearch, CaseMapsUnitByUnit) {
    struct {
        std::u16string text, upper, lower, asciiUpper;
    } const rows[] = {
        {u"stra\x00DF\x0065", u"STRA\x00DF\x0045", u"stra\x00DF\x0065", u"STRA\x00DF\x0045"},
        {u"\x0130I\x0131", u"\x0130II", u"ii\x0131", u"\x0130I\x0131"},
        {u"@[`{az~\x7F\x00FF", u"@[`{AZ~\x7F\x0178", u"@[`{az~\x7F\x00FF", u"@[`{AZ~\x7F\x00FF"},
        {u"\xD801\xDC28\0b"s, u"\xD801\xDC28\0B"s, u"\xD801\xDC28\0b"s, u"\xD801\xDC28\0B"s},
    };
    for (auto const& row : rows) {
        VynUString upper = makeString(row.text), lower = upper, asciiUpper = upper;
        upper.toUpper(false);
        lower.toLower(false);
        asciiUpper.toUpper(true);
        EXPECT_EQ(textOf(upper), row.upper);
        EXPECT_EQ(textOf(lower), row.lower);
        EXPECT_EQ(textOf(asciiUpper), row.asciiUpper);
        EXPECT_EQ(makeString(row.text).compareNoCase(upper), 0);
    }
}

TEST(VynUStringSearch, OrderIsThatOfUnits) {
    struct {
        std::u16string a, b;
        int exact, noCase;
        unsigned long n = npos;
    } const rows[] = {
        {u"abc", u"abd", -1, -1},      {u"abc", u"abd", 0, 0, 2},
        {u"abc", u"xyz", 0, 0, 0},     {u"ab", u"abc", -1, -1},
        {u"ab", u"abc", 0, 0, 2},      {u"ABC", u"abc", -1, 0},
        {u"a", u"_", 1, -1}, // folded to upper case, letters sort before what stands between the cases
        {u"A", u"_", -1, -1},          {u"\xD83D\xDE00", u"\xE000", -1, -1},
        {u"ab\0x"s, u"ab\0y"s, 0, 0},  {u"ab\0x"s, u"ab", 0, 0},
        {u"\x00FF", u"\x0178", -1, 0}, {u"\x00E9\x0062", u"\x00C9\x0041", 1, 1},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        VynUString const a = makeString(row.a), b = makeString(row.b);
        EXPECT_EQ(a.compare(b, row.n), row.exact);
        EXPECT_EQ(b.compare(a, row.n), -row.exact);
        EXPECT_EQ(a.compareNoCase(b, row.n), row.noCase);
        EXPECT_EQ(b.compareNoCase(a, row.n), -row.noCase);
        EXPECT_EQ(a.canonicalCompare(a.data(), b.data(), row.n), row.exact);
        EXPECT_EQ(a.canonicalCompareNoCase(a.data(), b.data(), row.n), row.noCase);
        EXPECT_EQ(a.compareNoCase(a, row.n), 0);
    }
    VynUString const any("a"), none;
    EXPECT_EQ(any.canonicalCompare(nullptr, none.data()), -1); // even before an empty text
    EXPECT_EQ(any.canonicalCompareNoCase(none.data(), nullptr), 1);
    EXPECT_EQ(any.canonicalCompare(nullptr, nullptr), 0);
    EXPECT_EQ(any.canonicalCompareNoCase(nullptr, any.data(), 0), 0);
}

// The strings skip equal stretches, the comparison of pointers walks: both see a difference, or an end, wherever it is.
TEST(VynUStringSearch, ComparisonsSeeEveryPosition) {
    for (unsigned long length = 1; length < 70; ++length)
        for (unsigned long i = 0; i < length; ++i)
            for (char16_t const unit : u"xZ\xFF"s + u'\0') {
                std::u16string text(length, u'y');
                VynUString const a = makeString(text);
                text[i] = unit;
                VynUString b = makeString(text);
                for (unsigned long const n : {npos, i, i + 1}) {
                    EXPECT_EQ(a.compare(b, n), a.canonicalCompare(a.data(), b.data(), n));
                    EXPECT_EQ(a.compareNoCase(b, n), a.canonicalCompareNoCase(a.data(), b.data(), n));
                }
                EXPECT_EQ(a.compare(b), unit > u'y' ? -1 : 1);
                EXPECT_EQ(b.find(unit, 0), unit == 0 ? npos : i);
                EXPECT_EQ(b.rfind(unit, length - 1), unit == 0 ? length - 1 : i);
                EXPECT_EQ(b.find(makeString(std::u16string(1, unit))), i);
                EXPECT_EQ(b.rfind(makeString(std::u16string(1, unit))), i);
            }
}

// The rule of an occurrence, to the letter.
bool occursAt(VynUString const& text, VynUString const& s, unsigned long i) {
    return text.data()[i] == s.data()[0] &&
           text.canonicalCompare(text.data() + i + 1, s.data() + 1, s.length() - 1) == 0;
}

void expectFound(VynUString const& text, VynUString const& s, unsigned long pos) {
    unsigned long first = npos, last = npos;
    for (unsigned long i = 0; i + s.length() <= text.length(); ++i) {
        if (!occursAt(text, s, i))
            continue;
        if (i >= pos && first == npos)
            first = i;
        if (i <= pos)
            last = i;
    }
    ASSERT_EQ(text.find(s, pos), first) << s << " in " << text << " from " << pos;
    ASSERT_EQ(text.rfind(s, pos), last) << s << " in " << text << " from " << pos;
}

// Texts of two units are full of near misses. At both ends the first and the last unit of the pattern meet at every
// other position, where a search would waste its time if it went on like this.
TEST(VynUStringSearch, FindsWhatALiteralSearchFinds) {
    std::mt19937 random(3);
    for (int round = 0; round < 3000; ++round) {
        char16_t const other = round % 4 == 0 ? u'\0' : u'b';
        auto const randomText = [&](unsigned long length) {
            std::u16string result(length, u'a');
            for (char16_t& unit : result)
                unit = random() % 2 ? u'a' : other;
            return result;
        };
        std::u16string const pattern = randomText(2 + random() % 11);
        std::u16string end;
        while (end.size() < 1000)
            end += std::u16string(pattern.size() - 1, pattern.front()) +
                   std::u16string(pattern.size() - 1, pattern.back());
        VynUString const text = makeString(end + randomText(random() % 2000) + end);
        expectFound(text, makeString(pattern), random() % text.length());
    }
}

// A search that starts again at every unit would take hours.
TEST(VynUStringSearch, HostilePatternsTakeLinearTime) {
    constexpr unsigned long length = 2'000'000;
    VynUString const text(static_cast<unsigned short>('a'), length);
    std::u16string const as(length / 4, u'a');
    for (std::u16string const& pattern : {as + u"ba", as + u"b" + as, u"ab" + as, as + u"bab" + as}) {
        VynUString const sought = makeString(pattern);
        EXPECT_EQ(text.find(sought), npos);
        EXPECT_EQ(text.rfind(sought), npos);
        VynUString const planted = text + sought + text;
        EXPECT_EQ(planted.find(sought), length);
        EXPECT_EQ(planted.rfind(sought), length);
    }
}

} // namespace
