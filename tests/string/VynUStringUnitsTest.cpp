// What callers may write for a unit and for a text of units, in C++17. Most of it is tested by compiling.

#include "tests/string/StringTestKit.h"

#include <vynulib/VynUStringList.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

template <class Unit>
void expectUnits(Unit a, Unit comma) {
    VynUString const text("b,a");
    VynUString assigned("old"), filled(text);
    assigned = a;
    filled.resize(4, a);
    EXPECT_EQ(assigned, u"a");
    EXPECT_EQ(filled, u"b,aa");
    EXPECT_EQ(VynUString(a, 3), u"aaa");
    EXPECT_EQ(text + a, u"b,aa");
    EXPECT_EQ(a + text, u"ab,a");
    EXPECT_EQ(text.split(comma).at(1), u"a");
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
    EXPECT_EQ(filled.find(u'\x3042'), 0u);
    EXPECT_EQ(filled.find(0x3042), 0u);
    EXPECT_EQ(filled.rfind(0x3042, 0), 0u);
    EXPECT_EQ(zero, u"");
    EXPECT_EQ(VynUString(0, 5), u"");
    EXPECT_EQ(VynUString("a") + 0, u"a");
    EXPECT_EQ(VynUString("a").split(0).at(0), u"a");
    EXPECT_EQ(VynUStringList(u"a,b", u',').at(1), u"b");
    EXPECT_EQ(VynUStringList(u"a,b", 0x2C).at(1), u"b");
    EXPECT_EQ(VynUString(u'a'), u"a");
    EXPECT_EQ(VynUString("a"), u'a');
    EXPECT_EQ(VynUString(97), u"97");
    EXPECT_EQ(VynUString("97"), 97);
    EXPECT_EQ(VynUString(65, VYNCS_UTF8), u"A");
    EXPECT_EQ(VynUString(65, 2, VYNCS_UTF8), u"AA");
}

TEST(VynUStringUnits, NullPointersStayUnambiguousWhereTheyWere) {
    VynUString text(nullptr, nullptr);
    EXPECT_EQ(text.canonicalCompare(nullptr, nullptr), 0);
    EXPECT_EQ(outcomeOf([&] { text.replace(0, 0, text); }), "out_of_range: invalid string index given");
}

TEST(VynUStringUnits, TextsOfUnitsAreTexts) {
    std::u16string const abZeroC = u"ab\0c"s;
    VynUString const text("xbx");
    VynUString pointer, view, replaced(text);
    pointer = u"ab\0c";
    view = abZeroC;
    replaced.replace(replaced.view().data(), replaced.view().data() + 1, u"ab");
    EXPECT_EQ(pointer.view(), u"ab");
    EXPECT_EQ(view.view(), abZeroC);
    EXPECT_EQ(replaced, u"abbx");
    EXPECT_EQ(VynUString(abZeroC).view(), abZeroC);
    EXPECT_EQ(VynUString(abZeroC.c_str()).view(), u"ab");
    EXPECT_EQ(VynUString(static_cast<char16_t const*>(nullptr)), u"");
    EXPECT_EQ(VynUString(u"abc", 2), u"ab");
    EXPECT_EQ(VynUString(abZeroC.data(), abZeroC.data() + 4).view(), abZeroC);
    EXPECT_EQ(text + u"b", u"xbxb");
    EXPECT_EQ(u"b" + text, u"bxbx");
    EXPECT_EQ(u"b"sv + text, u"bxbx");
    EXPECT_EQ(text.split(u"b").at(1), u"x");
    EXPECT_EQ(text.find(u"bx"), 1u);
    EXPECT_EQ(text.rfind(u"x"sv, VynUString::npos), 2u);
    EXPECT_EQ(text.canonicalCompare(u"xbx", text.data()), 0);
    EXPECT_EQ(text.canonicalCompareNoCase(text.data(), u"XBX"), 0);
    EXPECT_EQ(text.canonicalCompareNoCase(u"XBX", nullptr), 1);
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
