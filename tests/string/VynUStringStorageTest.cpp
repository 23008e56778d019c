// What strings are made of, and what they do with their memory.

#include "tests/string/StringTestKit.h"
#include "tests/support/GuardedBuffer.h"
#include "tests/support/Random.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <malloc.h>
#include <utility>

namespace {

constexpr unsigned short const abZeroCd[] = {'a', 'b', 0, 'c', 'd', 0}, unit = 0x3042, zero = 0;
constexpr VynPascalString pascal = {2, "\xE9z#"}, emptyPascal = {0, "abc"};
constexpr VynBSTR bstr = {5, {'a', 'b', 0, 'c', 'd', 'e'}}, emptyBstr = {0, {'a'}};
template <class T>
constexpr T const* null = nullptr;

// Each source makes this text, in a new string and in one whose old text was rendered.
template <class... Sources>
void expectTaken(Text const& text, Sources... sources) {
    auto const take = [&](auto& source) {
        VynUString assigned("old");
        assigned.c_str(VYNCS_UTF8);
        assigned = source;
        VynUString const made(std::move(source)); // a string as it is, in its own capacity
        EXPECT_EQ(textOf(assigned), text);
        EXPECT_STREQ(assigned.c_str(VYNCS_UTF8), makeString(text).c_str(VYNCS_UTF8));
        EXPECT_EQ(textOf(made), text);
        EXPECT_EQ(made.capacity(), std::max(inlineCapacity, text.size()));
    };
    (take(sources), ...);
}

TEST(VynUStringStorage, TextsAreTakenFromWhateverHoldsThem) {
    expectTaken(u"", null<char>, "\0a", null<unsigned short>, &zero, zero, '\0', std::u16string_view(),
                null<VynPascalString>, &emptyPascal, null<VynBSTR>, emptyBstr, VynUString('a', 0ul),
                VynUString('\0', 3), VynUString(zero, 9), VynUString(null<char>, 3),
                VynUString(null<unsigned short>, 3), VynUString(abZeroCd, abZeroCd),
                VynUString(VynUString("hello"), 9, 3));
    // No whole character, and a set that converts nothing without a limit.
    expectTaken(u"", VynUString('\xE3', VYNCS_UTF8), VynUString('a', VYNCS_UTF16), VynUString('a', 4, VYNCS_UTF16));
    // The units that are counted in the bytes given are taken from all that follow.
    expectTaken(u"\xFFFD", VynUString('\xC3', 3, VYNCS_UTF8));
    expectTaken(u"\xFFFD\xE9", VynUString("\xF0\x80\x80\xC3\xA9z", 4, VYNCS_UTF8));
    expectTaken(u"\xE9", VynUString('\xE9', VYNCS_ISO_8859_1), VynUString("\xC3\xA9\xC3\xA9", 2, VYNCS_UTF8));
    expectTaken(u"\xE9z", VynUString(pascal, VYNCS_ISO_8859_1), VynUString(&pascal, VYNCS_ISO_8859_1));
    expectTaken(u"ab", "ab", abZeroCd, VynUString("ab", 9), VynUString(abZeroCd, 5),
                VynUString("a\0\0\0b\0\0\0\0\0\0", 8, VYNCS_UTF32));
    expectTaken(u"ab\0cd"s, bstr, &bstr, VynUString(abZeroCd, abZeroCd + 5), std::u16string_view(u"ab\0cd", 5));
    expectTaken(u"\x3042", unit);
    expectTaken(Text(600, u'x'), VynUString('x', 600), std::string(600, 'x').c_str());
    expectTaken(u"-2147483648", VynUString(INT_MIN));
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
            std::copy_n(terminated.begin(), text.size() + terminator, bytes);
            VynUString const expected(terminated.data(), set);
            EXPECT_EQ(VynUString(reinterpret_cast<char*>(bytes), 1000, set), expected);
            if (terminator > 1)
                continue;
            unsigned char* const pascalString = bytes; // one byte of length, and the terminator is overwritten
            std::copy_n(text.begin(), text.size(), pascalString + 1);
            *pascalString = static_cast<unsigned char>(text.size());
            EXPECT_EQ(VynUString(reinterpret_cast<VynPascalString*>(pascalString), set), expected);
            EXPECT_EQ(VynUString(text[0], set), VynUString(text.substr(0, 1).c_str(), set));
        }
    // After 175 values, each a pair of units, half a value goes on in zeros, and a terminator follows.
    VynUString filled;
    filled.resize(702, 'x', VYNCS_UTF32);
    EXPECT_EQ(textOf(filled).substr(350), Text(1, u'\x7878') + Text(351, zero));
}

TEST(VynUStringStorage, TakesPartsOfItself) {
    VynUString units = makeString(u"wxyz"), bytes("wxyz");
    units.at(1) = 2;
    units = *reinterpret_cast<VynBSTR const*>(units.data() + 1);
    EXPECT_EQ(textOf(units), u"yz");
    bytes = bytes.c_str(VYNCS_ISO_8859_1) + 1;
    EXPECT_EQ(textOf(bytes), u"xyz");
}

TEST(VynUStringStorage, JoinsTextsOfAllKinds) {
    VynUString const s = makeString(u"s\0"s);
    for (auto const& [joined, expected] :
         std::initializer_list<std::pair<VynUString, Text>>{{s + 'z', u"s\0z"s},
                                                            {'z' + s, u"zs\0"s},
                                                            {s + '\0', u"s\0"s},
                                                            {s + "xyz", u"s\0xyz"s},
                                                            {"xyz" + s, u"xyzs\0"s},
                                                            {s + null<char>, u"s\0"s},
                                                            {null<char> + s, u"s\0"s},
                                                            {s + abZeroCd, u"s\0ab"s},
                                                            {abZeroCd + s, u"abs\0"s},
                                                            {s + zero, u"s\0"s},
                                                            {zero + s, u"s\0"s},
                                                            {s + VynUString(unit, 300), u"s\0"s + Text(300, unit)}}) {
        EXPECT_EQ(textOf(joined), expected);
        EXPECT_EQ(joined.capacity(), std::max(inlineCapacity, expected.size()));
    }
}

TEST(VynUStringStorage, RoomIsMadeExactlyAndOnlyWhereItIsMissing) {
    VynUString string;
    EXPECT_EQ(string.SetupSpace(inlineCapacity)->m_uHeap, 0u);
    EXPECT_EQ(string.SetupSpace(258)->m_uHeap, 1u);
    string = "def";
    EXPECT_THROW(string.AssureSpace(npos), std::bad_array_new_length);
    EXPECT_THROW(string.resize(npos - 1, unit), std::bad_array_new_length);
    EXPECT_THROW(string.resize(npos, unit), std::length_error);
    EXPECT_THROW(string.resize(npos, 'x', VYNCS_UTF8), std::length_error);
    allocationsLeft = 0;
    EXPECT_NO_THROW(string.assureSize(258));
    EXPECT_THROW(string.c_str(VYNCS_UTF8), std::bad_alloc);
    allocationsLeft = unlimitedAllocations;
    EXPECT_EQ(string.numChars(), 3u); // no broken rendering is left behind
    EXPECT_EQ(string.capacity(), 258u);
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
