// Where editing and concatenation must be exact to the letter, and where arguments are the string's own text.

#include "tests/string/StringTestKit.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace std::string_literals;

constexpr auto done = "done", rangeError = "out_of_range: invalid string index given";

TEST(VynUStringEditing, OddArgumentsDoWhatIsStated) {
    VynUString const x("x");
    struct {
        std::u16string text;
        std::function<void(VynUString&)> edit;
        std::string outcome;
        std::u16string result;
    } const rows[] = {
        {u"a", [](VynUString& s) { s.resize(4, '\xE9', VYNCS_ISO_8859_1); }, done, u"a\x00E9\x00E9\x00E9"},
        {u"abcd", [](VynUString& s) { s.erase(), s.resize(4, '\x82', VYNCS_SHIFTJIS); }, done, u"\xFF42\xFF42\0d"s},
        {u"abcd", [](VynUString& s) { s.erase(), s.resize(4, '\0'); }, done, u"\0bcd"s},
        {u"abc", [](VynUString& s) { s = s.mid(9); }, done, u""}, // the sum of position and count wraps
        {u"abc", [](VynUString& s) { s = s.mid(2, VynUString::npos - 1); }, done, u"c"},
        {u"abc", [](VynUString& s) { s.mid(4, 0); }, rangeError, u"abc"},
        {u"", [](VynUString& s) { s.erase(5, 1); }, done, u""},
        {u"abc", [](VynUString& s) { s.erase(5, 1); }, rangeError, u"abc"},
        {u"abc", [&](VynUString& s) { s.replace(s.data() + 2, s.data() + 1, x); }, done, u"abx"}, // to the end
        {u"abc", [&](VynUString& s) { s.replace(s.data() + 4, s.data(), x); }, rangeError, u"abc"},
        {u"abc", [&](VynUString& s) { s.replace(x.data(), x.data(), x); }, rangeError, u"abc"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        VynUString string = makeString(row.text);
        EXPECT_EQ(outcomeOf([&] { row.edit(string); }), row.outcome);
        EXPECT_EQ(textOf(string), row.result);
    }
}

// In place, in place behind a heap array, and where the result needs a new array.
TEST(VynUStringEditing, ReplacesPartsOfATextByPartsOfItself) {
    constexpr unsigned long length = 6;
    for (unsigned long const before : {0ul, 252ul, 300ul})
        for (unsigned long code = 0; code < 7 * 7 * 7 * 7; ++code) {
            unsigned long const p = before + code % 7, n = code / 7 % 7, q = before + code / 49 % 7, k = code / 343;
            std::u16string const text = std::u16string(before, u'.') + u"abcdef";
            ASSERT_EQ(text.size(), before + length);
            VynUString string = makeString(text);
            string.replace(p, n, string, q, k);
            ASSERT_EQ(textOf(string), std::u16string(text).replace(p, n, text, q, k)) << p << n << q << k;
        }
}

TEST(VynUStringEditing, OperatorsReadTheirOperandsAsTheConstructorsDo) {
    VynUString const b("b"), longB(static_cast<unsigned short>('b'), 300);
    unsigned short const wide[] = {0x3042, 0};
    struct {
        VynUString sum;
        std::u16string text;
        unsigned long capacity = 257;
    } const rows[] = {
        {b + 'a', u"ba"},
        {b + '\0', u"b"},
        {b + static_cast<char const*>(nullptr), u"b"},
        {b + wide, u"b\x3042"},
        {longB + longB, std::u16string(600, u'b'), 600},
        {'a' + b, u"ab"},
        {wide[0] + b, u"\x3042\x0062"},
        {"xyz" + longB, u"xyz" + std::u16string(300, u'b'), 303},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(textOf(row.sum), row.text);
        EXPECT_EQ(row.sum.capacity(), row.capacity);
    }
}

template <class Pointer>
void expectOrder(Pointer left, VynUString const& right, int order) {
    EXPECT_EQ(left == right, order == 0);
    EXPECT_EQ(left != right, order != 0);
    EXPECT_EQ(left < right, order < 0);
    EXPECT_EQ(left > right, order > 0);
    EXPECT_EQ(left <= right, order <= 0);
    EXPECT_EQ(left >= right, order >= 0);
}

TEST(VynUStringEditing, PointersOnTheLeftCompareAsStrings) {
    struct {
        char const* left;
        std::u16string right;
        int order;
    } const rows[] = {
        {"a", u"b", -1}, {"b", u"a", 1},       {"ab", u"abc", -1}, {"ab", u"ab", 0},
        {"", u"", 0},    {"ab", u"ab\0c"s, 0}, {"A", u"a", -1},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.left);
        VynUString const right = makeString(row.right), left(row.left);
        expectOrder(row.left, right, row.order);
        expectOrder(left.data(), right, row.order);
        EXPECT_EQ(left == right, row.order == 0);
        EXPECT_EQ(left != right, row.order != 0);
        EXPECT_EQ(left < right, row.order < 0);
    }
    expectOrder(static_cast<char const*>(nullptr), VynUString(), 0);
    expectOrder(static_cast<unsigned short const*>(nullptr), VynUString("a"), -1);
}

} // namespace
