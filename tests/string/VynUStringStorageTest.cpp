// Construction, assignment and what a string does with its memory.

#include "tests/string/StringTestKit.h"
#include "tests/support/FailingAllocation.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <malloc.h>
#include <memory>
#include <new>
#include <utility>

namespace {

using namespace std::string_literals;
using Text = std::u16string;

constexpr unsigned long inlineCapacity = 257, npos = VynUString::npos;
constexpr unsigned short const abZeroCd[] = {'a', 'b', 0, 'c', 'd', 0}, unit = 0x3042, zero = 0;
constexpr char const* noBytes = nullptr;
constexpr unsigned short const* noUnits = nullptr;
constexpr VynPascalString const *noPascal = nullptr, pascal = {3, "a\xE9z"}, emptyPascal = {0, "abc"};
constexpr VynBSTR const *noBstr = nullptr, bstr = {5, {'a', 'b', 0, 'c', 'd', 'e'}}, emptyBstr = {0, {'a'}};

void expectText(Text const& text, std::initializer_list<VynUString> strings) {
    for (VynUString const& string : strings) {
        EXPECT_EQ(textOf(string), text) << &string - strings.begin();
        EXPECT_EQ(string.capacity(), std::max(inlineCapacity, text.size())) << text.size();
        EXPECT_EQ(string.data()[text.size()], 0) << text.size();
    }
}

TEST(VynUStringStorage, ConstructorsTakeWhatTheyAreGiven) {
    VynUString const hello("hello");
    expectText(u"", {VynUString(), VynUString('\0'), VynUString('\0', 3), VynUString('a', 0ul), VynUString(zero, 9),
                     VynUString(""), VynUString(noBytes), VynUString(noBytes, 3), VynUString(noUnits),
                     VynUString(noUnits, 3), VynUString(emptyPascal), VynUString(noPascal), VynUString(emptyBstr),
                     VynUString(noBstr), VynUString(hello, 9, 3), VynUString(abZeroCd, abZeroCd)});
    // No whole character; the last two are counted as units, but the set converts none without a limit.
    expectText(u"", {VynUString('\x80', VYNCS_UTF8), VynUString('\xE3', VYNCS_UTF8), VynUString('a', VYNCS_UTF16),
                     VynUString('a', 4, VYNCS_UTF16), VynUString("a\0\0", 2, VYNCS_UTF16)});
    // What is counted bounds the conversion, not the bytes that were counted in.
    expectText(u"\xFFFD", {VynUString('\xC3', 3, VYNCS_UTF8)});
    expectText(u"\xFFFD\xE9", {VynUString("\xF0\x80\x80\xC3\xA9z", 4, VYNCS_UTF8)}); // reads beyond 4
    expectText(u"a", {VynUString('a'), VynUString("a\x80z", VYNCS_UTF8), VynUString(abZeroCd, 1)});
    expectText(u"\xE9", {VynUString('\xE9', VYNCS_ISO_8859_1), VynUString("\xC3\xA9\xC3\xA9", 2, VYNCS_UTF8)});
    expectText(u"ab", {VynUString("ab", 9), VynUString(abZeroCd), VynUString(abZeroCd, 5)});
    expectText(u"ab\0cd"s, {VynUString(abZeroCd, abZeroCd + 5), VynUString(bstr), VynUString(&bstr)});
    expectText(u"a\xE9z", {VynUString(pascal, VYNCS_ISO_8859_1), VynUString(&pascal, VYNCS_ISO_8859_1)});
    expectText(Text(600, u'x'), {VynUString('x', 600), VynUString(std::string(600, 'x').c_str())});
    expectText(u"-2147483648", {VynUString(INT_MIN)});
    expectText(u"0", {VynUString(0)});
    EXPECT_EQ(VynUString(abZeroCd, 500).capacity(), 500u); // all of it is reserved
}

// Texts that end with the memory they are in give what a terminated text gives.
TEST(VynUStringStorage, UnterminatedBytesAreReadAsIfTerminated) {
    TestRandom random;
    for (VynCharSet const set : {VYNCS_UTF8, VYNCS_UTF16ESC, VYNCS_SHIFTJIS, VYNCS_EUC_KR, VYNCS_EUC_JP, VYNCS_GB18030})
        for (int round = 0; round < 2000; ++round) {
            std::vector<char> pascalString(2 + random.below(40));
            for (char& byte : pascalString)
                byte = static_cast<char>(random.below(3) ? 1 + random.below(255) : 0x81 + random.below(100));
            std::string const text(pascalString.begin() + 1, pascalString.end());
            pascalString[0] = static_cast<char>(text.size());
            VynUString const string(reinterpret_cast<VynPascalString const*>(pascalString.data()), set);
            EXPECT_EQ(string, VynUString(text.c_str(), set)) << set << ' ' << testing::PrintToString(text);
            EXPECT_EQ(VynUString(text[0], set), VynUString(text.substr(0, 1).c_str(), set)) << set << ' ' << text[0];
        }
}

TEST(VynUStringStorage, AssignmentsReplaceTheTextAndGrowToIt) {
    struct {
        std::function<void(VynUString&)> assign;
        Text text;
        unsigned long capacity = 270;
    } const rows[] = {
        {[](auto& s) { s = &pascal; }, textOf(VynUString(pascal))},
        {[](auto& s) { s = bstr; }, u"ab\0cd"s},
        {[](auto& s) { s = std::string(271, 'x').c_str(); }, Text(271, u'x'), 271},
        {[](auto& s) { s = unit; }, u"\x3042"},
        {[](auto& s) { s.freeSecText(), s = 'c'; }, u"c"},
        {[](auto& s) { s.at(266) = 2, s = *reinterpret_cast<VynBSTR const*>(s.data() + 266); }, u"xy"},
        {[](auto& s) { s = s.c_str(VYNCS_ISO_8859_1) + 267; }, u"xyz"},
        {[](auto& s) { s.swap(s) = *&s; }, Text(267, u'.') + u"xyz"},
        {[](auto& s) { s = VynUString("q"); }, u"q", inlineCapacity}, // takes over what the other has
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        VynUString string = makeString(Text(267, u'.') + u"xyz");
        string.c_str(VYNCS_UTF8);
        row.assign(string);
        EXPECT_EQ(textOf(string), row.text);
        EXPECT_EQ(string.capacity(), row.capacity);
        EXPECT_STREQ(string.c_str(VYNCS_UTF8), makeString(row.text).c_str(VYNCS_UTF8));
    }
}

TEST(VynUStringStorage, AssignedNothingErases) {
    auto const erases = [](auto const& nothing) {
        VynUString string("old");
        return (string = nothing).empty();
    };
    EXPECT_TRUE(erases(noPascal) && erases(&emptyPascal) && erases(emptyBstr) && erases(noUnits) && erases(&zero));
    EXPECT_TRUE(erases(zero) && erases(noBytes) && erases("") && erases('\0') && erases("\0a"));
}

TEST(VynUStringStorage, RoomIsMadeExactlyAndOnlyWhereItIsMissing) {
    VynUString string("abc");
    EXPECT_TRUE(string.SetupSpace(inlineCapacity)->m_uHeap == 0 && string.SetupSpace(258)->m_uHeap == 1);
    string = "def";
    EXPECT_THROW(string.AssureSpace(npos), std::bad_array_new_length);
    EXPECT_THROW(string.resize(npos - 1, unit), std::bad_array_new_length);
    allocationsLeft = 0;
    EXPECT_NO_THROW(string.AssureSpace(258));
    EXPECT_THROW(string.AssureSpace(300), std::bad_alloc);
    EXPECT_THROW(string.c_str(VYNCS_UTF8), std::bad_alloc);
    allocationsLeft = unlimitedAllocations;
    EXPECT_TRUE(string == VynUString("def") && string.capacity() == 258);
    EXPECT_EQ(string.numChars(), 3u); // no broken rendering is left behind
    string.assureSize(300);
    EXPECT_TRUE(string.empty() && string.capacity() == 300);
}

TEST(VynUStringStorage, OwnsWhatItTakes) {
    VynUString a(unit, 300), b("b");
    a.c_str(VYNCS_UTF8), b.c_str(VYNCS_UTF8);
    a.swap(b);
    EXPECT_TRUE(a == VynUString("b") && b == VynUString(unit, 300) && b.capacity() == 300);
    EXPECT_STREQ(a.c_str(VYNCS_UTF8), "b");

    std::unique_ptr<unsigned short const[]> const abandoned(b.data());
    b.assign(a);
    EXPECT_EQ(b.capacity(), inlineCapacity);
    EXPECT_EQ(abandoned[299], unit); // let go of, not released
}

TEST(VynUStringStorage, MovesStealAndLeaveAnEmptyString) {
    for (unsigned long const length : {0ul, 5ul, inlineCapacity, 300ul}) {
        VynUString source(unit, length), assigned("old");
        unsigned short const* const text = source.data();
        source.c_str(VYNCS_UTF8);
        allocationsLeft = 0;
        VynUString moved(std::move(source));
        assigned = std::move(moved), assigned = std::move(*&assigned);
        EXPECT_NO_THROW(assigned.c_str(VYNCS_UTF8)); // it came along
        allocationsLeft = unlimitedAllocations;
        EXPECT_EQ(textOf(assigned), Text(length, unit));
        EXPECT_EQ(assigned.data() == text, length > inlineCapacity);
        EXPECT_TRUE(moved.empty() && moved.capacity() == inlineCapacity);
        moved = "usable";
        EXPECT_STREQ(moved.c_str(VYNCS_UTF8), "usable");
    }
}

TEST(VynUStringStorage, ShowsNoMemoryThatItNeverWrote) {
    mallopt(M_PERTURB, 0x55); // fresh memory is not zero
    alignas(VynUString) unsigned char memory[sizeof(VynUString)];
    std::memset(memory, 0xAA, sizeof memory);
    auto* const string = new (memory) VynUString("hello");
    string->resize(2, zero);
    string->resize(200, '\0', VYNCS_ISO_8859_1); // converts to nothing: what was there shows behind a zero unit
    EXPECT_EQ(textOf(*string), u"he\0lo"s + Text(195, 0));
    string->~VynUString();
    VynUString reserved(abZeroCd, 400);
    reserved.resize(400, '\0', VYNCS_UTF8);
    EXPECT_EQ(textOf(reserved), u"ab"s + Text(398, 0));
}

} // namespace
