// What callers may write for a unit and for a text of units, in C++17. Most of it is tested by compiling.

#include "tests/string/StringTestKit.h"

#include <vynulib/VynUStringList.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr auto npos = VynUString::npos;

struct Row {
    char const* name;
    VynUString made;
    std::u16string expected;
};

template <class Unit>
void expectUnits(Unit a, Unit comma) {
    VynUString const text("b,a");
    VynUString assigned("old"), filled(text);
    assigned = a;
    filled.resize(4, a);
    Row const rows[] = {{"repeated", VynUString(a, 3), u"aaa"}, {"assigned", assigned, u"a"},
                        {"filled up with", filled, u"b,aa"},    {"appended", text + a, u"b,aa"},
                        {"put before", a + text, u"ab,a"},      {"split at", text.split(comma).at(1), u"a"}};
    for (Row const& row : rows)
        EXPECT_EQ(textOf(row.made), row.expected) << row.name;
}

TEST(VynUStringUnits, EachTypeOfAUnitIsAUnit) {
    expectUnits<unsigned short>('a', ',');
    expectUnits(u'a', u',');
    expectUnits(0x61, 0x2C);
}

TEST(VynUStringUnits, LiteralsAreUnitsButForAnIntegerAlone) {
    VynUString filled, zero("old");
    filled.resize(1, 0x3042);
    zero = 0;
    Row const rows[] = {{"unit", VynUString(u'a'), u"a"},
                        {"implicit unit", VynUString("x").replace(0, 1, u'a', 0), u"a"},
                        {"integer", VynUString(97), u"97"},
                        {"implicit integer", VynUString("x").replace(0, 1, 97, 0), u"97"},
                        {"repeated", VynUString(0x3042, 2), u"\x3042\x3042"},
                        {"filled up with", filled, u"\x3042"},
                        {"repeated 0", VynUString(0, 5), u""},
                        {"assigned 0", zero, u""},
                        {"appended 0", VynUString("a") + 0, u"a"},
                        {"split at 0", VynUString("a").split(0).at(0), u"a"},
                        {"byte of a set", VynUString(65, VYNCS_UTF8), u"A"},
                        {"bytes of a set", VynUString(65, 2, VYNCS_UTF8), u"AA"},
                        {"list split at a unit", VynUStringList(u"a,b", u',').at(1), u"b"},
                        {"list split at an integer", VynUStringList(u"a,b", 0x2C).at(1), u"b"},
                        {"null pointers", VynUString(nullptr, nullptr), u""}};
    for (Row const& row : rows)
        EXPECT_EQ(textOf(row.made), row.expected) << row.name;
    EXPECT_EQ(filled.find(u'\x3042'), 0u);
    EXPECT_EQ(filled.find(0x3042), 0u);
    EXPECT_EQ(filled.rfind(0x3042, 0), 0u);
    EXPECT_EQ(VynUString("97"), 97);
    EXPECT_EQ(VynUString("a"), u'a');
    EXPECT_EQ(VynUString(u'a').canonicalCompare(nullptr, nullptr), 0);
    EXPECT_EQ(outcomeOf([] { VynUString("a").replace(0, 0, VynUString()); }),
              "out_of_range: invalid string index given");
}

TEST(VynUStringUnits, TextsOfUnitsAreTexts) {
    std::u16string const abZeroC = u"ab\0c"s;
    VynUString const text("xbx");
    VynUString pointer, view, replaced(text);
    pointer = u"ab\0c";
    view = abZeroC;
    replaced.replace(replaced.view().data(), replaced.view().data() + 1, u"ab");
    Row const rows[] = {{"pointer", VynUString(abZeroC.c_str()), u"ab"},
                        {"no pointer", VynUString(static_cast<char16_t const*>(nullptr)), u""},
                        {"pointer and count", VynUString(u"abc", 2), u"ab"},
                        {"two pointers", VynUString(abZeroC.data(), abZeroC.data() + 4), abZeroC},
                        {"view", VynUString(std::u16string_view(abZeroC)), abZeroC},
                        {"string", VynUString(abZeroC), abZeroC},
                        {"assigned pointer", pointer, u"ab"},
                        {"assigned view", view, abZeroC},
                        {"replaced", replaced, u"abbx"},
                        {"appended pointer", text + u"b", u"xbxb"},
                        {"pointer put before", u"b" + text, u"bxbx"},
                        {"view put before", u"b"sv + text, u"bxbx"},
                        {"split at", text.split(u"b").at(1), u"x"}};
    for (Row const& row : rows) {
        EXPECT_EQ(textOf(row.made), row.expected) << row.name;
        EXPECT_EQ(row.made.view(), row.expected) << row.name;
    }
    EXPECT_EQ(text.find(u"bx"), 1u);
    EXPECT_EQ(text.rfind(u"x"sv, npos), 2u);
    EXPECT_EQ(text.canonicalCompare(u"xbx", text.data()), 0);
    EXPECT_EQ(text.canonicalCompare(text.data(), u"xbx"), 0);
    EXPECT_EQ(text.canonicalCompareNoCase(u"XBX", u"xbx"), 0);
    EXPECT_EQ(text.canonicalCompareNoCase(u"XBX", nullptr), 1);
    EXPECT_EQ(text, u"xbx");
    EXPECT_LT(u"xb"sv, text);
}

// What must not compile, as it would be a guess.
template <class From>
constexpr bool constructs = std::is_constructible_v<VynUString, From>;
template <class From>
constexpr bool assigns = std::is_assignable_v<VynUString&, From>;
static_assert(!constructs<long> && !constructs<unsigned> && !constructs<std::nullptr_t> && !constructs<double>);
static_assert(!assigns<long> && !assigns<unsigned> && !assigns<std::nullptr_t> && !assigns<bool>);
static_assert(!std::is_constructible_v<VynUString, char16_t const*, unsigned short const*>);

constexpr auto split = [](auto unit) -> decltype(VynUString().split(unit)) { return {}; };
constexpr auto append = [](auto unit) -> decltype(VynUString() + unit) { return {}; };
constexpr auto resize = [](auto unit) -> decltype(VynUString().resize(1, unit)) {};
static_assert(!std::is_invocable_v<decltype(split), unsigned> && std::is_invocable_v<decltype(split), char>);
static_assert(!std::is_invocable_v<decltype(append), long> && std::is_invocable_v<decltype(append), char>);
static_assert(!std::is_invocable_v<decltype(resize), long> && std::is_invocable_v<decltype(resize), char>);

// What has nothing to do with strings keeps its meaning.
static_assert(u"a" == u"a"sv && u"a"sv < u"b");
static_assert(std::is_same_v<decltype(u'a' + 1), int>);

} // namespace
