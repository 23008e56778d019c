// Construction, change and what a string does with its memory.

#include "tests/string/StringTestKit.h"
#include "tests/support/GuardedBuffer.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <malloc.h>
#include <memory>
#include <utility>

namespace {

using namespace std::string_literals;
using Text = std::u16string;

constexpr unsigned long inlineCapacity = 257, npos = VynUString::npos;
constexpr unsigned short const abZeroCd[] = {'a', 'b', 0, 'c', 'd', 0}, unit = 0x3042, zero = 0;
constexpr char const* noBytes = nullptr;
constexpr unsigned short const* noUnits = nullptr;
constexpr VynPascalString const *noPascal = nullptr, pascal = {3, "a\xE9z"}, emptyPascal = {0, "abc"},
                                asciiPascal = {2, "abc"};
constexpr VynBSTR const *noBstr = nullptr, bstr = {5, {'a', 'b', 0, 'c', 'd', 'e'}}, emptyBstr = {0, {'a'}};

void expectText(char const* from, Text const& text, std::initializer_list<VynUString> strings) {
    for (VynUString const& string : strings) {
        SCOPED_TRACE(testing::Message() << from << ", row " << &string - strings.begin());
        EXPECT_EQ(textOf(string), text);
        EXPECT_EQ(string.capacity(), std::max(inlineCapacity, text.size()));
        EXPECT_EQ(string.data()[text.size()], 0);
    }
}

TEST(VynUStringStorage, ConstructorsTakeWhatTheyAreGiven) {
    VynUString const hello("hello");
    expectText("no text", u"",
               {VynUString(), VynUString(noBytes), VynUString(noBytes, 3), VynUString(noUnits), VynUString(noUnits, 3),
                VynUString(noPascal), VynUString(noBstr), VynUString(std::u16string_view())});
    expectText("an empty text", u"",
               {VynUString('\0'), VynUString('\0', 3), VynUString('a', 0ul), VynUString(zero, 9), VynUString(""),
                VynUString(emptyPascal), VynUString(emptyBstr), VynUString(hello, 9, 3),
                VynUString(abZeroCd, abZeroCd)});
    expectText("no whole character", u"", {VynUString('\x80', VYNCS_UTF8), VynUString('\xE3', VYNCS_UTF8)});
    expectText("a set that converts nothing without a limit", u"",
               {VynUString('a', VYNCS_UTF16), VynUString('a', 4, VYNCS_UTF16), VynUString("a\0\0", 2, VYNCS_UTF16)});
    expectText("bytes of which less is converted than counted", u"\xFFFD", {VynUString('\xC3', 3, VYNCS_UTF8)});
    expectText("bytes after those that are counted", u"\xFFFD\xE9",
               {VynUString("\xF0\x80\x80\xC3\xA9z", 4, VYNCS_UTF8)});
    expectText("one character", u"a", {VynUString('a'), VynUString("a\x80z", VYNCS_UTF8), VynUString(abZeroCd, 1)});
    expectText("its bytes", u"\xE9",
               {VynUString('\xE9', VYNCS_ISO_8859_1), VynUString("\xC3\xA9\xC3\xA9", 2, VYNCS_UTF8)});
    expectText("a text that ends", u"ab", {VynUString("ab", 9), VynUString(abZeroCd), VynUString(abZeroCd, 5)});
    expectText("all units", u"ab\0cd"s, {VynUString(abZeroCd, abZeroCd + 5), VynUString(bstr), VynUString(&bstr)});
    expectText("a Pascal string", u"a\xE9z",
               {VynUString(pascal, VYNCS_ISO_8859_1), VynUString(&pascal, VYNCS_ISO_8859_1)});
    expectText("a long text", Text(600, u'x'), {VynUString('x', 600), VynUString(std::string(600, 'x').c_str())});
    expectText("the least integer", u"-2147483648", {VynUString(INT_MIN)});
    expectText("the integer 0", u"0", {VynUString(0)});
    EXPECT_EQ(VynUString(abZeroCd, 500).capacity(), 500u); // all of it is reserved
}

// The memory ends with the text where that has a length, or else with its terminator, whatever length is given.
TEST(VynUStringStorage, NothingAfterATextIsRead) {
    TestRandom random;
    GuardedBuffer memory(100);
    VynCharSet const sets[] = {VYNCS_UTF8,   VYNCS_UTF16ESC, VYNCS_SHIFTJIS, VYNCS_EUC_KR,
                               VYNCS_EUC_JP, VYNCS_GB18030,  VYNCS_UTF16,    VYNCS_UTF32};
    for (VynCharSet const set : sets)
        for (int round = 0; round < 2000; ++round) {
            unsigned long const terminator = GetNullCharSize(set);
            std::string text((1 + random.below(10)) * 4, '\0');
            for (char& byte : text)
                byte = static_cast<char>(random.below(3) ? 1 + random.below(255) : 0x81 + random.below(100));
            SCOPED_TRACE(testing::Message() << "set " << set << ": " << testing::PrintToString(text));
            std::string const terminated = text + "\0\0\0\0"s;
            unsigned char* const bytes = memory.end() - text.size() - terminator;
            std::memcpy(bytes, terminated.data(), text.size() + terminator);
            VynUString const expected(terminated.data(), set);
            EXPECT_EQ(VynUString(reinterpret_cast<char*>(bytes), 1000, set), expected);
            if (terminator > 1)
                continue;
            unsigned char* const pascalString = bytes; // one byte of length, and the terminator is overwritten
            std::memcpy(pascalString + 1, text.data(), text.size());
            *pascalString = static_cast<unsigned char>(text.size());
            EXPECT_EQ(VynUString(reinterpret_cast<VynPascalString*>(pascalString), set), expected);
            EXPECT_EQ(VynUString(text[0], set), VynUString(text.substr(0, 1).c_str(), set));
        }
}

TEST(VynUStringStorage, ChangesAreMadeWholeOrNotAtAll) {
    Text const dots(262, u'.'), old = u"wX" + dots + u"\xC9\xE9wxyz", threeHundred(300, unit);
    VynUString const longer(unit, 300);
    VynUString other(longer);
    std::string const longBytes(300, 'x');
    static VynBSTR longBstr = {300, {}};
    longer.copy(&longBstr);
    struct {
        char const* name;
        std::function<void(VynUString&)> change;
        Text text;
        unsigned long capacity = 280;
    } const rows[] = {
        // First, before the default set has its tables.
        {"bytes", [&](auto& s) { s = longBytes.c_str(); }, Text(300, u'x'), 300},
        {"string", [&](auto& s) { s = longer; }, threeHundred, 300},
        {"moved string", [](auto& s) { s = VynUString("q"); }, u"q", inlineCapacity}, // takes over what the other has
        {"assign", [&](auto& s) { expectAbandoned(s), s.assign(longer); }, threeHundred, 300},
        {"swap", [&](auto& s) { s.swap(other); }, threeHundred, 300},
        {"itself", [](auto& s) { s.assign(s).swap(s) = *&s; }, old},
        {"Pascal string", [](auto& s) { s = &asciiPascal; }, u"ab"},
        {"no Pascal string", [](auto& s) { s = noPascal; }, u""},
        {"empty Pascal string", [](auto& s) { s = &emptyPascal; }, u""},
        {"BSTR", [](auto& s) { s = bstr; }, u"ab\0cd"s},
        {"longer BSTR", [](auto& s) { s = longBstr; }, threeHundred, 300},
        {"empty BSTR", [](auto& s) { s = emptyBstr; }, u""},
        {"own BSTR", [](auto& s) { s.at(267) = 2, s = *reinterpret_cast<VynBSTR const*>(s.data() + 267); }, u"yz"},
        {"own bytes", [](auto& s) { s = s.c_str(VYNCS_ISO_8859_1) + 267; }, u"xyz"},
        {"no bytes", [](auto& s) { s = noBytes; }, u""},
        {"empty bytes", [](auto& s) { s = "\0a"; }, u""},
        {"units", [&](auto& s) { s = longer.data(); }, threeHundred, 300},
        {"no units", [](auto& s) { s = noUnits; }, u""},
        {"empty units", [](auto& s) { s = &zero; }, u""},
        {"view", [&](auto& s) { s = longer.view(); }, threeHundred, 300},
        {"empty view", [](auto& s) { s = std::u16string_view(); }, u""},
        {"unit", [](auto& s) { s = unit; }, u"\x3042"},
        {"zero unit", [](auto& s) { s = zero; }, u""},
        {"byte", [](auto& s) { s.freeSecText(), s = 'c'; }, u"c"},
        {"zero byte", [](auto& s) { s = '\0'; }, u""},
        {"room", [](auto& s) { s.AssureSpace(300); }, u"", 300},
        {"new array of units", [](auto& s) { s.resize(300, unit); }, threeHundred, 300},
        {"new array of bytes", [](auto& s) { s.resize(300, 'x', VYNCS_ISO_8859_7); }, Text(300, u'x'), 300},
        {"more bytes", [](auto& s) { s.resize(272, 'x', VYNCS_ISO_8859_8); }, old + u"xx"},
        {"replace", [&](auto& s) { s.replace(0, npos, longer, 0); }, threeHundred, 300},
        {"upper case", [](auto& s) { s.toUpper(false); }, u"WX" + dots + u"\xC9\xC9WXYZ"},
        {"lower case", [](auto& s) { s.toLower(false); }, u"wx" + dots + u"\xE9\xE9wxyz"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.name);
        VynUString string;
        string.AssureSpace(280);
        string = std::u16string_view(old);
        string.c_str(VYNCS_UTF8);
        auto const expectText = [&](Text const& text, unsigned long capacity) {
            EXPECT_EQ(textOf(string), text);
            EXPECT_EQ(string.capacity(), capacity);
            EXPECT_STREQ(string.c_str(VYNCS_UTF8), makeString(text).c_str(VYNCS_UTF8));
        };
        exhaustMemory([&] { row.change(string); }, [&] { expectText(old, 280); });
        expectText(row.text, row.capacity);
    }
}

TEST(VynUStringStorage, RoomIsMadeExactlyAndOnlyWhereItIsMissing) {
    VynUString string("abc");
    EXPECT_EQ(string.SetupSpace(inlineCapacity)->m_uHeap, 0u);
    EXPECT_EQ(string.SetupSpace(258)->m_uHeap, 1u);
    string = "def";
    EXPECT_THROW(string.AssureSpace(npos), std::bad_array_new_length);
    EXPECT_THROW(string.resize(npos - 1, unit), std::bad_array_new_length);
    allocationsLeft = 0;
    EXPECT_NO_THROW(string.assureSize(258));
    EXPECT_THROW(string.c_str(VYNCS_UTF8), std::bad_alloc);
    allocationsLeft = unlimitedAllocations;
    EXPECT_EQ(string.numChars(), 3u); // no broken rendering is left behind
    EXPECT_EQ(string.capacity(), 258u);
}

TEST(VynUStringStorage, OwnsWhatItTakes) {
    VynUString swapped(unit, 300), other("b");
    swapped.swap(other);
    EXPECT_EQ(other, VynUString(unit, 300));
    std::unique_ptr<unsigned short const[]> const abandoned(other.data());
    other.assign(swapped);
    EXPECT_EQ(other.capacity(), inlineCapacity);
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
        EXPECT_TRUE(moved.empty());
        EXPECT_EQ(moved.capacity(), inlineCapacity);
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
    reserved.resize(500, '\0', VYNCS_UTF8);
    EXPECT_EQ(textOf(reserved), Text(500, 0));
}

} // namespace
