// Case, order and search.

#include "tests/string/StringTestKit.h"
#include "tests/support/Random.h"

#include <vynulib/VynUChar.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace {

using namespace std::string_literals;
using Text = std::u16string;

constexpr unsigned long npos = VynUString::npos;

TEST(VynUStringSearch, CaseMapsEveryUnitByItself) {
    Text units(0x10000, 0);
    std::iota(units.begin(), units.end(), u'\0');
    for (bool const asciiOnly : {false, true})
        for (bool const up : {false, true}) {
            VynUString mapped = makeString(units);
            up ? mapped.toUpper(asciiOnly) : mapped.toLower(asciiOnly);
            for (unsigned short const unit : units) {
                unsigned const value = (up ? VynUChar::m_gUpperCaseTable : VynUChar::m_gLowerCaseTable).getValue(unit);
                ASSERT_EQ(mapped.at(unit), value == 0 || (asciiOnly && unit > 0x7F) ? unit : value) << unit;
            }
        }
}

template <class Left>
void expectOrder(Left left, VynUString const& right, int order) {
    EXPECT_EQ(left == right, order == 0);
    EXPECT_EQ(left != right, order != 0);
    EXPECT_EQ(left < right, order < 0);
    EXPECT_EQ(left >= right, order >= 0);
    EXPECT_EQ(left > right, order > 0);
    EXPECT_EQ(left <= right, order <= 0);
}

TEST(VynUStringSearch, OrderIsThatOfUnits) {
    struct {
        char const* name;
        Text a, b;
        int exact, noCase;
        unsigned long n = npos;
    } const rows[] = {{"less", u"abc", u"abd", -1, -1},
                      {"equal up to 2", u"abc", u"abd", 0, 0, 2},
                      {"equal up to 0", u"abc", u"xyz", 0, 0, 0},
                      {"shorter", u"ab", u"abc", -1, -1},
                      {"case", u"ABC", u"abc", -1, 0},
                      {"letter and underscore", u"a", u"_", 1, -1},
                      {"surrogate", u"\xDE00", u"\xE000", -1, -1},
                      {"after a zero unit", u"ab\0x"s, u"ab\0y"s, 0, 0},
                      {"case outside ASCII", u"\xFF", u"\x178", -1, 0}};
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        VynUString const a = makeString(row.a), b = makeString(row.b);
        EXPECT_EQ(a.compare(b, row.n), row.exact);
        EXPECT_EQ(b.compare(a, row.n), -row.exact);
        EXPECT_EQ(a.compareNoCase(b, row.n), row.noCase);
        EXPECT_EQ(b.compareNoCase(a, row.n), -row.noCase);
        EXPECT_EQ(a.canonicalCompare(a.data(), b.data(), row.n), row.exact);
        EXPECT_EQ(a.canonicalCompareNoCase(a.data(), b.data(), row.n), row.noCase);
        std::string const bytes(row.a.begin(), row.a.end()); // of the default set, whatever it is
        expectOrder(bytes.c_str(), b, VynUString(bytes.c_str()).compare(b));
        expectOrder(a.data(), b, a.compare(b));
        expectOrder(row.a.c_str(), b, a.compare(b));
        expectOrder(a.view(), b, a.compare(b));
        expectOrder<VynUString const&>(a, b, a.compare(b));
    }
    VynUString const a("a"), none;
    expectOrder(static_cast<unsigned short const*>(nullptr), a, -1);
    expectOrder(static_cast<char16_t const*>(nullptr), a, -1);
    EXPECT_EQ(a.canonicalCompare(nullptr, none.data()), -1);
    EXPECT_EQ(a.canonicalCompareNoCase(none.data(), nullptr), 1);
    EXPECT_EQ(a.canonicalCompare(nullptr, nullptr), 0);
    EXPECT_EQ(a.canonicalCompare(nullptr, a.data(), 0), 0);
}

// The strings skip equal stretches, the comparison of pointers walks: both see a difference, or an end, wherever it is.
TEST(VynUStringSearch, ComparisonsSeeEveryPosition) {
    for (unsigned long length = 1; length < 70; ++length)
        for (unsigned long i = 0; i < length; ++i)
            for (char16_t const unit : u"xZ\xFF\xE000"s + u'\0') {
                Text text(length, u'y');
                VynUString const a = makeString(text);
                text[i] = unit;
                VynUString const b = makeString(text), one = makeString(Text(1, unit));
                for (unsigned long const n : {npos, i, i + 1}) {
                    ASSERT_EQ(a.compare(b, n), a.canonicalCompare(a.data(), b.data(), n)) << i << ' ' << length;
                    ASSERT_EQ(a.compareNoCase(b, n), a.canonicalCompareNoCase(a.data(), b.data(), n));
                }
                ASSERT_EQ(a.compare(b), unit > u'y' ? -1 : 1);
                ASSERT_EQ(b.find(one), i);
                ASSERT_EQ(b.rfind(one), i);
                ASSERT_EQ(b.find(unit), unit == 0 ? npos : i);
                ASSERT_EQ(b.find(unit, i + 1), npos);
                ASSERT_EQ(b.rfind(unit, length - 1), unit == 0 ? length - 1 : i);
            }
}

// Texts of two units are full of near misses. At both ends the first and the last unit of the pattern meet at every
// other position, where a search would waste its time if it went on like this.
TEST(VynUStringSearch, FindsWhatALiteralSearchFinds) {
    TestRandom random;
    for (unsigned round = 0; round < 3000; ++round) {
        char16_t const other = round % 4 == 0 ? u'\0' : u'b';
        auto const randomText = [&](unsigned long length) {
            Text result(length, u'a');
            std::generate(result.begin(), result.end(), [&] { return random.below(2) ? u'a' : other; });
            return result;
        };
        Text const pattern = randomText(2 + random.below(11));
        Text compared = pattern.substr(0, pattern.find(u'\0', 1)), end;
        while (end.size() < 1000)
            end += Text(pattern.size() - 1, pattern.front()) + Text(pattern.size() - 1, pattern.back());
        compared.resize(std::min(compared.size() + 1, pattern.size())); // its first zero unit is met, and ends it
        end.insert(random.below(450), pattern); // about where a search gives up comparing from every position
        Text const text = end + randomText(random.below(2000)) + end + randomText(9);
        VynUString const string = makeString(text), sought = makeString(pattern);
        unsigned long const lastStart = text.size() - pattern.size();
        unsigned long const starts[] = {0, random.below(text.size()), text.size() - 1 - random.below(20)};
        for (unsigned long const pos : starts) {
            unsigned long const found = text.find(compared, pos);
            ASSERT_EQ(string.find(sought, pos), found <= lastStart ? found : npos) << "seed " << random.seed();
            ASSERT_EQ(string.rfind(sought, pos), text.rfind(compared, std::min(pos, lastStart)));
        }
    }
}

TEST(VynUStringSearch, ShortcutsAreKept) {
    VynUString const hello("hello"), ell("ell"), none;
    EXPECT_EQ(hello.rfind(u'l', 10), 4u);
    EXPECT_EQ(hello.rfind(u'\0', 2), 4u);
    EXPECT_EQ(hello.rfind(u'z', 3), npos);
    EXPECT_EQ(none.rfind(u'h', 0), npos);
    EXPECT_EQ(hello.find(u'\0'), npos);
    EXPECT_EQ(ell.find(u'e', 3), npos);
    EXPECT_EQ(hello.find(hello), 0u);
    EXPECT_EQ(hello.find(hello, 1), npos);
    EXPECT_EQ(hello.rfind(hello, 3), 0u);
    EXPECT_EQ(ell.find(hello), npos);
    EXPECT_EQ(ell.rfind(hello), npos);
    EXPECT_EQ(hello.find(none), npos);
    EXPECT_EQ(hello.rfind(none), npos);
    EXPECT_EQ(none.find(none), npos);
    EXPECT_EQ(none.rfind(none), npos);
}

// A search that starts again at every unit would take hours.
TEST(VynUStringSearch, HostilePatternsTakeLinearTime) {
    VynUString const text(u'a', 2'000'000);
    Text const as(500'000, u'a');
    for (Text const& pattern : {as + u"ba", as + u"b" + as, u"ab" + as, as + u"bab" + as}) {
        VynUString const sought = makeString(pattern), planted = text + sought + text;
        EXPECT_EQ(text.find(sought), npos);
        EXPECT_EQ(text.rfind(sought), npos);
        EXPECT_EQ(planted.find(sought), text.length());
        EXPECT_EQ(planted.rfind(sought), text.length());
    }
}

} // namespace
