// Construction, assignment and what a string does with its memory.

#include "tests/string/StringTestKit.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <random>
#include <utility>

namespace {

// What the strings of a thread take and give back: they use the array forms only.
thread_local struct {
    long arrays = 0;         // in use
    long taken = 0;          // ever
    std::size_t largest = 0; // bytes
    bool refuse = false;
} heap;

struct Watch {
    Watch() { heap = {}; }
    ~Watch() { heap.refuse = false; }
};

} // namespace

// Not inlined: compilers would see `new[]` paired with `free`, and warn.
[[gnu::noinline]] void* operator new[](std::size_t size) {
    void* const memory = heap.refuse ? nullptr : std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    std::memset(memory, 0xAA, size);
    ++heap.arrays;
    ++heap.taken;
    heap.largest = std::max(heap.largest, size);
    return memory;
}

[[gnu::noinline]] void operator delete[](void* memory) noexcept {
    heap.arrays -= memory != nullptr;
    std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept {
    operator delete[](memory);
}

namespace {

using namespace std::string_literals;

constexpr unsigned long inlineCapacity = 257, npos = VynUString::npos;
constexpr unsigned short const abZeroCd[] = {'a', 'b', 0, 'c', 'd', 0};

std::u16string repeated(unsigned long n, char16_t unit) {
    return std::u16string(n, unit);
}

template <class Counted>
std::unique_ptr<Counted> counted(decltype(Counted::length) length, std::u16string const& text) {
    auto result = std::make_unique<Counted>();
    result->length = length;
    std::copy(text.begin(), text.end(), result->text);
    return result;
}

TEST(VynUStringStorage, ConstructorsTakeWhatTheyAreGiven) {
    auto const pascal = counted<VynPascalString>(3, u"a\x00E9zb"), noPascal = counted<VynPascalString>(0, u"abc");
    auto const bstr = counted<VynBSTR>(5, u"ab\0cd"s), noBstr = counted<VynBSTR>(0, u"abc");
    std::string const longBytes(300, 'x');
    VynUString const hello("hello");
    char const* const noBytes = nullptr;
    unsigned short const* const noUnits = nullptr;
    unsigned short const unit = 0x3042;
    struct {
        VynUString string;
        std::u16string text;
        unsigned long capacity = inlineCapacity;
    } const rows[] = {
        {VynUString(), u""},
        {VynUString('a'), u"a"},
        {VynUString('\0'), u""},
        {VynUString('\xE9', VYNCS_ISO_8859_1), u"\x00E9"},
        {VynUString('\x80', VYNCS_UTF8), u""}, // makes no unit
        {VynUString('\xE3', VYNCS_UTF8), u""}, // a lead byte alone is not counted
        {VynUString('a', VYNCS_UTF16), u""},   // half a unit
        {VynUString('a', VYNCS_UTF32), u""},
        {VynUString('a', 3), u"aaa"},
        {VynUString('a', 300, VYNCS_UTF8), repeated(300, u'a'), 300},
        {VynUString('\xC3', 3, VYNCS_UTF8), u"\xFFFD"}, // counted as one, then a byte is left
        {VynUString('a', 4, VYNCS_UTF16), u""},         // counted as two units, but the set converts none without limit
        {VynUString('\0', 3), u""},
        {VynUString('a', 0ul), u""},
        {VynUString(unit), u"\x3042"},
        {VynUString(unit, 258), repeated(258, 0x3042), 258},
        {VynUString(static_cast<unsigned short>(0), 9), u""},
        {VynUString(0), u"0"},
        {VynUString(INT_MIN), u"-2147483648"},
        {VynUString("\xC3\xA9", VYNCS_UTF8), u"\x00E9"},
        {VynUString(longBytes.c_str()), repeated(300, u'x'), 300},
        {VynUString(""), u""},
        {VynUString(noBytes), u""},
        {VynUString("a\x80z", VYNCS_UTF8), u"a"}, // a stray byte ends the count
        {VynUString("abcdef", 3), u"abc"},
        {VynUString("\xF0\x80\x80\xC3\xA9z", 4, VYNCS_UTF8), u"\xFFFD\x00E9"}, // two are counted, and read beyond 4
        {VynUString("ab", 9), u"ab"},
        {VynUString(abZeroCd), u"ab"},
        {VynUString(noUnits), u""},
        {VynUString(abZeroCd, 5), u"ab"},
        {VynUString(abZeroCd, 500), u"ab", 500}, // all of it is reserved
        {VynUString(abZeroCd, 1), u"a"},
        {VynUString(abZeroCd, abZeroCd + 5), u"ab\0cd"s},
        {VynUString(abZeroCd + 5, abZeroCd), u""},
        {VynUString(*pascal, VYNCS_ISO_8859_1), u"a\x00E9z"},
        {VynUString(noPascal.get()), u""},
        {VynUString(static_cast<VynPascalString*>(nullptr)), u""},
        {VynUString(*bstr), u"ab\0cd"s},
        {VynUString(noBstr.get()), u""},
        {VynUString(static_cast<VynBSTR*>(nullptr)), u""},
        {VynUString(hello, 1, 3), u"ell"},
        {VynUString(hello, 3), u"lo"},
        {VynUString(hello, 9, 3), u""},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(textOf(row.string), row.text);
        EXPECT_EQ(row.string.capacity(), row.capacity);
        EXPECT_EQ(row.string.data()[row.string.length()], 0);
    }
}

// Texts that end with the memory they are in give what a terminated text gives.
TEST(VynUStringStorage, UnterminatedBytesAreReadAsIfTerminated) {
    static constexpr VynCharSet sets[] = {
#define VYN_CHARSET_NUMBER(name, number) name,
        VYN_CHARSETS(VYN_CHARSET_NUMBER)
#undef VYN_CHARSET_NUMBER
    };
    std::mt19937 random(1);
    for (VynCharSet const set : sets) {
        for (int byte = 1; byte < 256; ++byte) {
            char const c = static_cast<char>(byte);
            if (GetMinUnitSize(set) == 1) {
                EXPECT_EQ(VynUString(c, set), VynUString(std::string(1, c).c_str(), set)) << set << ' ' << byte;
            }
            EXPECT_EQ(VynUString(c, 4, set), VynUString((std::string(4, c) + "\0\0\0"s).c_str(), set)) << set << byte;
        }
        for (int round = 0; round < 50; ++round) {
            std::string bytes(1 + random() % 40, '\0');
            for (char& c : bytes)
                c = static_cast<char>(random() % 3 ? 1 + random() % 255 : 0x81 + random() % 100);
            auto const exact = std::make_unique<unsigned char[]>(bytes.size() + 1);
            exact[0] = static_cast<unsigned char>(bytes.size());
            std::memcpy(exact.get() + 1, bytes.data(), bytes.size());
            VynUString const string(reinterpret_cast<VynPascalString const*>(exact.get()), set);
            if (GetMinUnitSize(set) == 1) {
                EXPECT_EQ(string, VynUString(bytes.c_str(), set)) << set << ' ' << testing::PrintToString(bytes);
            } else {
                EXPECT_LE(string.length(), bytes.size() / GetMinUnitSize(set)) << set;
            }
        }
    }
}

TEST(VynUStringStorage, AssignmentsReplaceTheTextAndGrowToIt) {
    auto const pascal = counted<VynPascalString>(2, u"pq"), noPascal = counted<VynPascalString>(0, u"");
    auto const bstr = counted<VynBSTR>(300, repeated(300, u'b')), noBstr = counted<VynBSTR>(0, u"");
    unsigned short const unit = 0x4E00, zero = 0;
    struct {
        std::function<void(VynUString&)> assign;
        std::u16string text;
        unsigned long capacity = 270;
    } const rows[] = {
        {[&](VynUString& s) { s = pascal.get(); }, u"pq"},
        {[&](VynUString& s) { s = noPascal.get(); }, u""},
        {[&](VynUString& s) { s = static_cast<VynPascalString*>(nullptr); }, u""},
        {[&](VynUString& s) { s = *bstr; }, repeated(300, u'b'), 300},
        {[&](VynUString& s) { s = *noBstr; }, u""},
        {[&](VynUString& s) { s = abZeroCd; }, u"ab"},
        {[&](VynUString& s) { s = &zero; }, u""},
        {[&](VynUString& s) { s = static_cast<unsigned short*>(nullptr); }, u""},
        {[&](VynUString& s) { s = "xyz"; }, u"xyz"},
        {[&](VynUString& s) { s = std::string(271, 'x').c_str(); }, repeated(271, u'x'), 271},
        {[&](VynUString& s) { s = ""; }, u""},
        {[&](VynUString& s) { s = static_cast<char*>(nullptr); }, u""},
        {[&](VynUString& s) { s = unit; }, u"\x4E00"},
        {[&](VynUString& s) { s = zero; }, u""},
        {[&](VynUString& s) { s = 'c'; }, u"c"},
        {[&](VynUString& s) { s = '\0'; }, u""},
        {[&](VynUString& s) { s.erase(); }, u""},
        {[&](VynUString& s) { s = s.data() + 268; }, u"yz"}, // from its own text
        {[&](VynUString& s) { s.at(266) = 2, s = *reinterpret_cast<VynBSTR const*>(s.data() + 266); }, u"xy"},
        {[&](VynUString& s) { s = s.c_str(VYNCS_ISO_8859_1) + 267; }, u"xyz"},
        {[&](VynUString& s) { s = static_cast<VynUString const&>(s); }, repeated(267, u'.') + u"xyz"},
        {[&](VynUString& s) { s = VynUString("q"); }, u"q", inlineCapacity}, // takes over what the other has
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        VynUString string = makeString(repeated(267, u'.') + u"xyz");
        row.assign(string);
        EXPECT_EQ(textOf(string), row.text);
        EXPECT_EQ(string.capacity(), row.capacity);
    }
}

TEST(VynUStringStorage, RoomIsMadeExactlyAndOnlyWhereItIsMissing) {
    Watch watch;
    VynUString string("abc");
    string.AssureSpace(inlineCapacity);
    EXPECT_EQ(heap.taken, 0);
    EXPECT_EQ(string, VynUString("abc"));
    EXPECT_EQ(string.SetupSpace(inlineCapacity)->m_ulLength, 0u);

    string.assureSize(258);
    EXPECT_EQ(heap.taken, 1);
    EXPECT_EQ(heap.largest, 259 * sizeof(unsigned short));
    EXPECT_TRUE(string.empty());

    string = "def";
    unsigned short const* const text = string.data();
    EXPECT_THROW(string.AssureSpace(npos), std::bad_array_new_length);
    EXPECT_THROW(string.AssureSpace(npos / 2), std::bad_array_new_length);
    EXPECT_THROW(string.resize(npos - 1, static_cast<unsigned short>('x')), std::bad_array_new_length);
    heap.refuse = true;
    EXPECT_THROW(string.AssureSpace(300), std::bad_alloc);
    EXPECT_THROW(string.c_str(VYNCS_UTF8), std::bad_alloc);
    heap.refuse = false;
    EXPECT_EQ(string, VynUString("def"));
    EXPECT_EQ(string.data(), text);
    EXPECT_EQ(string.capacity(), 258u);
    EXPECT_EQ(string.numChars(), 3u); // no broken rendering is left behind
}

TEST(VynUStringStorage, OwnsWhatItTakes) {
    Watch watch;
    {
        VynUString a = makeString(repeated(300, u'a')), b = makeString(repeated(400, u'b'));
        a.c_str(VYNCS_UTF8);
        EXPECT_EQ(heap.arrays, 3);

        heap.taken = 0;
        VynUString const sum = a + b;
        EXPECT_EQ(heap.taken, 1); // however long, of the final size at once
        EXPECT_EQ(heap.largest, 701 * sizeof(unsigned short));

        a.swap(b);
        EXPECT_EQ(a.length() - b.length(), 100u);
        EXPECT_EQ(heap.arrays, 3); // a, b and their sum: the rendering is gone
    }
    EXPECT_EQ(heap.arrays, 0);

    VynUString a = makeString(repeated(300, u'a'));
    std::unique_ptr<unsigned short const[]> const abandoned(a.data());
    a.assign(VynUString("short"));
    EXPECT_EQ(a.capacity(), inlineCapacity);
    EXPECT_EQ(abandoned[299], u'a'); // let go of, not released
}

TEST(VynUStringStorage, MovesStealAndLeaveAnEmptyString) {
    for (unsigned long const length : {0ul, 5ul, inlineCapacity, 300ul}) {
        VynUString source(static_cast<unsigned short>('m'), length);
        unsigned short const* const text = source.data();
        char const* const bytes = source.c_str(VYNCS_UTF8);
        Watch watch;
        VynUString moved(std::move(source));
        VynUString assigned("old");
        assigned = std::move(moved);
        assigned = std::move(*&assigned);
        EXPECT_EQ(heap.taken, 0);
        EXPECT_EQ(textOf(assigned), repeated(length, u'm'));
        EXPECT_EQ(assigned.data() == text, length > inlineCapacity);
        EXPECT_EQ(static_cast<void const*>(assigned.c_str(VYNCS_UTF8)), bytes);
        for (VynUString* const left : {&source, &moved}) {
            EXPECT_TRUE(left->empty());
            EXPECT_EQ(left->capacity(), inlineCapacity);
            *left = "usable";
            EXPECT_STREQ(left->c_str(VYNCS_UTF8), "usable");
        }
    }
}

TEST(VynUStringStorage, ShowsNoMemoryThatItNeverWrote) {
    alignas(VynUString) unsigned char memory[sizeof(VynUString)];
    std::memset(memory, 0xAA, sizeof memory);
    auto* const string = new (memory) VynUString("hello");
    string->resize(2, static_cast<unsigned short>(0));
    string->resize(200, '\0', VYNCS_ISO_8859_1); // converts to nothing: what was there shows behind a zero unit
    EXPECT_EQ(textOf(*string), u"he\0lo"s + repeated(195, 0));
    string->resize(300, '\0', VYNCS_ISO_8859_1);
    EXPECT_EQ(textOf(*string), repeated(300, 0));
    string->~VynUString();

    VynUString reserved(abZeroCd, 400);
    reserved.resize(400, '\0', VYNCS_UTF8);
    EXPECT_EQ(textOf(reserved), u"ab"s + repeated(398, 0));
}

} // namespace
