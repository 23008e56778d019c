// What callers may write for a unit and for a text of units, in C++17. Most of it is tested by compiling.

#include "tests/string/StringTestKit.h"

#include <vynulib/VynUStringList.h>

#include <type_traits>

namespace {

using namespace std::string_view_literals;

template <class... Strings>
void expectText(std::u16string_view text, Strings const&... strings) {
    for (std::u16string_view const view : {strings.view()...})
        EXPECT_EQ(view, text);
}

template <class Unit>
void expectUnits(Unit a, Unit comma) {
    VynUString const text("b,a");
    VynUString assigned("old"), filled(text);
    assigned = a;
    filled.resize(4, a);
    expectText(u"a", assigned, text.split(comma).at(1));
    expectText(u"b,aa", filled, text + a);
    expectText(u"ab,a", a + text);
    expectText(u"aaa", VynUString(a, 3));
}

TEST(VynUStringUnits, EachTypeOfAUnitIsAUnitButForAnIntegerAlone) {
    expectUnits<unsigned short>('a', ',');
    expectUnits(u'a', u',');
    expectUnits(0x61, 0x2C);
    VynUString zero("old"), filled;
    zero = 0;
    filled.resize(1, 0x3042);
    EXPECT_EQ(filled.find(0x3042), 0u);
    EXPECT_EQ(filled.rfind(u'\x3042', 0), 0u);
    expectText(u"", zero, VynUString(0, 5));
    expectText(u"\x3042", filled + 0, filled.split(0).at(0), VynUString(u'\x3042'));
    expectText(u"97", VynUString(97));
    expectText(u"b", VynUStringList(u"a,b", 0x2C).at(1), VynUStringList(u"a,b", u',').at(1));
    expectText(u"AA", VynUString(65, 2, VYNCS_UTF8), VynUString(65, VYNCS_UTF8) + u"A");
}

TEST(VynUStringUnits, TextsOfUnitsAreTexts) {
    Text const abZeroC = u"ab\0c"s;
    VynUString const text("xbx");
    VynUString pointer, view, replaced(text);
    pointer = u"ab\0c";
    view = abZeroC;
    replaced.replace(replaced.view().data(), replaced.view().data() + 1, u"ab");
    expectText(u"ab", pointer, VynUString(abZeroC.c_str()), VynUString(u"abc", 2));
    expectText(abZeroC, view, VynUString(abZeroC), VynUString(abZeroC.data(), abZeroC.data() + 4));
    expectText(u"abbx", replaced);
    expectText(u"xbxb", text + u"b", u"x" + text.split(u"x").at(1) + u"xb"sv);
    expectText(u"bxbx", u"b" + text, u"b"sv + text);
    EXPECT_EQ(text.find(u"bx"), 1u);
    EXPECT_EQ(text.rfind(u"x"sv), 2u);
    EXPECT_EQ(text.canonicalCompare(u"xbx", text.data()), 0);
    EXPECT_EQ(text.canonicalCompareNoCase(text.data(), u"XBX"), 0);
    EXPECT_EQ(text.canonicalCompareNoCase(u"XBX", nullptr), 1);
}

TEST(VynUStringUnits, NullPointersAndZerosStayUnambiguousWhereTheyWere) {
    VynUString text(nullptr, nullptr);
    EXPECT_EQ(text.canonicalCompare(nullptr, nullptr), 0);
    EXPECT_EQ(outcomeOf([&] { text.replace(0, 0, text); }), // NOLINT(modernize-use-nullptr)
              "out_of_range: invalid string index given");
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
