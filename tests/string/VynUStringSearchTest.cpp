// Case, order and search.

#include "tests/string/StringTestKit.h"
#include "tests/support/Random.h"

#include <vynulib/VynUChar.h>

#include <algorithm>
#include <numeric>

namespace {

TEST(VynUStringSearch, CaseMapsEveryUnitByItself) {
    Text units(0x10000, 0), separated;
    std::iota(units.begin(), units.end(), u'\0');
    for (char16_t const unit : units)
        separated += {unit, u'\x4E00'}; // ASCII beside what is none
    for (char16_t const unit : units) {
        unsigned short const mapped = VynUChar::m_gUpperCaseTable.getValue(unit);
        unsigned short const text[] = {unit, 0}, upper[] = {mapped != 0 ? mapped : text[0], 0};
        ASSERT_EQ(VynUString().canonicalCompareNoCase(text, upper), 0) << text[0];
    }
    for (Text const& text : {units, separated})
        for (bool const asciiOnly : {false, true})
            for (bool const up : {false, true}) {
                VynUString mapped = makeString(text);
                up ? mapped.toUpper(asciiOnly) : mapped.toLower(asciiOnly);
                for (unsigned long i = 0; i < text.size(); ++i) {
                    unsigned const value =
                        (up ? VynUChar::m_gUpperCaseTable : VynUChar::m_gLowerCaseTable).getValue(text[i]);
                    ASSERT_EQ(mapped.at(i), value == 0 || (asciiOnly && text[i] > 0x7F) ? text[i] : value) << i;
                }
            }
}

template <class... Lefts>
void expectOrder(VynUString const& right, int order, Lefts const&... lefts) {
    auto const expect = [&](auto const& left) {
        EXPECT_EQ(left == right, order == 0);
        EXPECT_EQ(left != right, order != 0);
        EXPECT_EQ(left < right, order < 0);
        EXPECT_EQ(left >= right, order >= 0);
        EXPECT_EQ(left > right, order > 0);
        EXPECT_EQ(left <= right, order <= 0);
    };
    (expect(lefts), ...);
}

TEST(VynUStringSearch, EveryKindOfTextIsOrderedAsAString) {
    VynUString const b("b"), none;
    expectOrder(b, -1, "a", u"a", makeString(u"a").data(), makeString(u"a").view(), VynUString("a"));
    expectOrder(b, 0, "b", u"b", b.data(), b.view(), VynUString("b"));
    expectOrder(b, 1, "c", u"c", makeString(u"c").data(), makeString(u"c").view(), VynUString("c"));
    expectOrder(b, -1, static_cast<unsigned short const*>(nullptr), static_cast<char16_t const*>(nullptr));
    EXPECT_EQ(b.canonicalCompare(nullptr, none.data()), -1);
    EXPECT_EQ(b.canonicalCompareNoCase(none.data(), nullptr), 1);
    EXPECT_EQ(b.canonicalCompare(nullptr, b.data(), 0), 0);
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
        Text text = end + randomText(random.below(2000)) + end + randomText(9);
        text[random.below(text.size())] = u'#';
        VynUString const string = makeString(text), sought = makeString(pattern);
        unsigned long const lastStart = text.size() - pattern.size();
        for (unsigned long const pos : {0ul, random.below(text.size()) + 0ul, text.size() - 1 - random.below(20)}) {
            unsigned long const found = text.find(compared, pos);
            ASSERT_EQ(string.find(sought, pos), found <= lastStart ? found : npos) << "seed " << random.seed();
            ASSERT_EQ(string.rfind(sought, pos), text.rfind(compared, std::min(pos, lastStart)));
            ASSERT_EQ(string.find(u'#', pos), text.find(u'#', pos));
            ASSERT_EQ(string.rfind(u'#', pos), text.rfind(u'#', pos));
        }
    }
}

// What strings do by the block, they do with every rest behind the last block.
TEST(VynUStringSearch, EveryPositionInTextsOfEveryLength) {
    struct {
        char16_t unit, upper, others;
    } const rows[] = {{u'z', u'Z', u'#'}, {u'\xE9', u'\xC9', u'\xD7'}};
    for (unsigned long length = 1; length <= 140 && !HasFailure(); ++length)
        for (unsigned long at = 0; at < length && !HasFailure(); ++at)
            for (auto const& [unit, upper, others] : rows) {
                SCOPED_TRACE(testing::Message()
                             << length << " units, " << at << (unit == u'z' ? ": ASCII" : ": other"));
                Text text(length, others), other(length, u'%'), ended(length, u'+');
                text[at] = unit;
                ended[at] = u'\0';
                VynUString const string = makeString(text), pattern = makeString(text.substr(at, 2));
                Text const rest(length - at - 1, others);
                EXPECT_EQ(makeString(Text(at, others) + Text(length - at, unit)).find(unit), at);
                EXPECT_EQ(makeString(Text(at + 1, unit) + rest).rfind(unit, length - 1), at);
                EXPECT_EQ(string.find(pattern), at);
                EXPECT_EQ(string.rfind(pattern), at);

                VynUString mapped = string;
                mapped.c_str(VYNCS_ISO_8859_1);
                mapped.toUpper(false);
                EXPECT_EQ(mapped.compare(string), -1);
                EXPECT_EQ(string.compareNoCase(mapped), 0);
                EXPECT_EQ(mapped.compareNoCase(string), 0);
                EXPECT_EQ(mapped.find(upper), at);
                EXPECT_EQ(mapped.c_str(VYNCS_ISO_8859_1)[at], static_cast<char>(upper));
                mapped.toLower(false);
                EXPECT_EQ(mapped.compare(string), 0);

                mapped.at(at) = u'&';
                EXPECT_EQ(mapped.compareNoCase(string), -1);
                EXPECT_EQ(string.compareNoCase(mapped), 1);
                other.replace(0, at, at, u'+');
                other[at] = u'\0'; // what follows does not count
                EXPECT_EQ(makeString(other).compare(makeString(ended)), 0);
                EXPECT_EQ(makeString(other).compareNoCase(makeString(ended)), 0);
            }
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
