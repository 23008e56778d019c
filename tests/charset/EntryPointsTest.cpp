#include "tests/support/FailingAllocation.h"
#include "tests/support/GuardedBuffer.h"

#include <vynulib/VynCharSetConverter.h>

#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using Units = std::u16string;

constexpr VynCharSet allSets[] = {
#define ROW(name, number) name,
    VYN_CHARSETS(ROW)
#undef ROW
        static_cast<VynCharSet>(0),
};

unsigned char const* utf8(std::string const& text) {
    return reinterpret_cast<unsigned char const*>(text.c_str());
}
unsigned short const* units(Units const& text) {
    return reinterpret_cast<unsigned short const*>(text.c_str());
}

/// The output of `convert(dst, size)`, called with room for `size` elements that end at an inaccessible page.
template <class Element, class Convert>
std::basic_string<Element> written(std::size_t size, Convert convert, std::size_t terminator = 1) {
    GuardedBuffer memory(size * sizeof(Element));
    auto* const dst = reinterpret_cast<Element*>(memory.end()) - size;
    std::fill_n(dst, size, Element(0x5A));
    unsigned long const length = convert(dst, size);
    EXPECT_LE(length + (length ? terminator : 0), size);
    if (length != 0) {
        EXPECT_EQ(std::count(dst + length, dst + length + terminator, Element(0)), static_cast<long>(terminator));
    }
    return {dst, length};
}

std::string localToUtf8(std::string const& text, VynCharSet cs, std::size_t size = 64) {
    return written<char>(size, [&](char* dst, std::size_t room) {
        return LocalToUTF8(reinterpret_cast<unsigned char*>(dst), text.c_str(), room, cs);
    });
}

std::string utf8ToLocal(std::string const& text, VynCharSet cs, std::size_t size = 64) {
    auto const convert = [&](char* dst, std::size_t room) { return UTF8ToLocal(dst, utf8(text), room, cs); };
    return written<char>(size, convert, GetNullCharSize(cs));
}

TEST(EntryPoints, ConvertBetweenLocalTextAndUtf8) {
    struct Row {
        VynCharSet cs;
        std::string local;
        std::string utf8;
    };
    Row const both[] = {
        {VYNCS_KOI8R, "\xF0\xD2\xC9", "При"},
        {VYNCS_WCP932, "\x82\xA0", "あ"},
        {VYNCS_GB18030, "\x90\x30\x81\x30", "\xF0\x90\x80\x80"},
        {VYNCS_EUC_TW, "\xC3\xA9", "é"},
        {VYNCS_UTF16ESC, "U+00E9", "é"},
        {VYNCS_ISO_8859_1, "\xE9", "é"},
    };
    for (Row const& row : both) {
        EXPECT_EQ(localToUtf8(row.local, row.cs), row.utf8);
        EXPECT_EQ(utf8ToLocal(row.utf8, row.cs), row.local);
    }
    Row const toUtf8Only[] = {
        {VYNCS_UTF8, "\xE9", "é"},                                            // not valid, so ISO 8859-1
        {VYNCS_UTF8, "\xC3\xA9\xE9", "Ã©é"},                                  // the whole of it
        {VYNCS_UTF8, "\xF0\x9F\x98\x80", "\xC3\xB0\xC2\x9F\xC2\x98\xC2\x80"}, // raises the flag, although it is valid
        {VYNCS_WCP932, "\x87\x40", "\xC2\x87@"},
        {VYNCS_UTF16, "A\0", ""},
        {VYNCS_UTF32, "A\0\0\0\0\0\0\0"s, "A"},
    };
    for (Row const& row : toUtf8Only)
        EXPECT_EQ(localToUtf8(row.local, row.cs), row.utf8) << row.cs;
    EXPECT_EQ(utf8ToLocal("日é\xFF", VYNCS_ISO_8859_1), "?\xE9?");
    EXPECT_EQ(utf8ToLocal("aé", VYNCS_UTF16), "a\0\xE9\0"s);
    EXPECT_EQ(utf8ToLocal("a\xF0\x9F\x98\x80", VYNCS_UTF32), "a\0\0\0\x00\xF6\x01\0"s);
}

TEST(EntryPoints, ConvertFromAndToUtf16) {
    auto const toUtf16 = [](std::string const& text, VynCharSet cs, int size) {
        return written<char16_t>(static_cast<std::size_t>(size), [&](char16_t* dst, std::size_t) {
            return LocalToUTF16(reinterpret_cast<unsigned short*>(dst), text.c_str(), size, cs);
        });
    };
    EXPECT_EQ(toUtf16("\xF0\xD2\xC9", VYNCS_KOI8R, 10), u"При");
    EXPECT_EQ(toUtf16("\xF0\xD2\xC9", VYNCS_KOI8R, 3), u"Пр");
    EXPECT_EQ(toUtf16("\xE9", VYNCS_UTF8, 10), u"é");
    EXPECT_EQ(toUtf16("\xF0\x9F\x98\x80", VYNCS_UTF8, 10), u"\u00F0\u009F\u0098\u0080");
    EXPECT_EQ(toUtf16("ab\xFF", VYNCS_UTF8, 3), u"ab"); // what is beyond the room is not looked at
    EXPECT_EQ(toUtf16("A\0\0\0\x00\xF6\x01\0\0\0\0\0"s, VYNCS_UTF32, 10), u"A\U0001F600");
    EXPECT_EQ(toUtf16("a", VYNCS_UTF8, 1), u"");

    auto const decoded = [](std::string const& text, std::size_t size) {
        return written<char16_t>(size, [&](char16_t* dst, std::size_t room) {
            return UTF8ToUTF16(reinterpret_cast<unsigned short*>(dst), utf8(text), room);
        });
    };
    EXPECT_EQ(decoded("a\xF0\x9F\x98\x80", 10), u"a\U0001F600");
    EXPECT_EQ(decoded("a\xF0\x9F\x98\x80", 3), u"a\uFFFD");

    auto const encoded = [](Units const& text, std::size_t size) {
        return written<char>(size, [&](char* dst, std::size_t room) {
            return UTF16ToUTF8(reinterpret_cast<unsigned char*>(dst), units(text), room);
        });
    };
    EXPECT_EQ(encoded(u"éé", 3), "é");
    EXPECT_EQ(encoded({0xD800, u'a'}, 9), "?a");
    auto const local = [](Units const& text, VynCharSet cs, std::size_t size) {
        auto const convert = [&](char* dst, std::size_t room) { return UTF16ToLocal(dst, units(text), room, cs); };
        return written<char>(size, convert, GetNullCharSize(cs));
    };
    EXPECT_EQ(local(u"Прé", VYNCS_KOI8R, 4), "\xF0\xD2?");
    EXPECT_EQ(local(u"あa", VYNCS_WCP932, 2), "");
    EXPECT_EQ(local(u"ab", VYNCS_UTF32, 11), "a\0\0\0"s);
}

TEST(EntryPoints, AnswerNullEmptyAndTooSmall) {
    unsigned char bytes[4] = {1, 2, 3, 4};
    auto* const chars = reinterpret_cast<char*>(bytes);
    unsigned short wide[2] = {1, 2};
    unsigned short const text[] = {u'a', 0};
    auto const untouched = [&] { return bytes[0] == 1 && bytes[1] == 2 && wide[0] == 1; };
    unsigned long const results[] = {
        LocalToUTF8(nullptr, "a", 4, VYNCS_UTF8),
        LocalToUTF8(bytes, nullptr, 4, VYNCS_UTF8),
        LocalToUTF8(bytes, "a", 0, VYNCS_UTF8),
        UTF8ToLocal(nullptr, utf8("a"), 4, VYNCS_UTF8),
        UTF8ToLocal(chars, nullptr, 4, VYNCS_UTF8),
        UTF8ToLocal(chars, utf8(""), 3, VYNCS_UTF32),
        LocalToUTF16(nullptr, "a", 2, VYNCS_UTF8),
        LocalToUTF16(wide, nullptr, 2, VYNCS_UTF8),
        LocalToUTF16(wide, "a", 0, VYNCS_UTF8),
        LocalToUTF16(wide, "a", -1, VYNCS_UTF8),
        UTF16ToLocal(nullptr, text, 4, VYNCS_UTF8),
        UTF16ToLocal(chars, nullptr, 4, VYNCS_UTF8),
        UTF16ToLocal(chars, text, 1, VYNCS_UTF16),
        UTF8ToUTF16(nullptr, bytes, 2),
        UTF8ToUTF16(wide, nullptr, 2),
        UTF8ToUTF16(wide, bytes, 0),
        UTF16ToUTF8(nullptr, text, 2),
        UTF16ToUTF8(bytes, nullptr, 2),
        UTF16ToUTF8(bytes, text, 0),
        LocalPathToUTF8(nullptr, "a", 2),
        LocalPathToUTF8(bytes, nullptr, 2),
        LocalPathToUTF8(bytes, "a", 0),
        LocalPathToUTF8(bytes, "a", -5),
        UTF8ToLocalPath(nullptr, utf8("a"), 2),
        UTF8ToLocalPath(chars, nullptr, 2),
        UTF8ToLocalPath(chars, utf8("a"), 0),
        UTF8ToLocalPath(chars, utf8("a"), -5),
        UTF8ToLocal(chars, utf8("\x80\x80"), 4, VYNCS_UTF8), // decodes to nothing
        GetNumUnits(nullptr, VYNCS_UTF8),
        GetNumBytes(nullptr, VYNCS_UTF8),
        VynCharSetWStrlen(nullptr),
    };
    EXPECT_EQ(std::count(std::begin(results), std::end(results), 0UL), static_cast<long>(std::size(results)));
    EXPECT_TRUE(untouched());
    EXPECT_EQ(UTF8ToLocal(chars, utf8(""), 4, VYNCS_UTF16), 0UL);
    EXPECT_EQ(std::string(chars, 4), "\0\0\x03\x04"s);
    for (auto const& empty : std::initializer_list<std::function<unsigned long()>>{
             [&] { return LocalToUTF8(bytes, "", 4, VYNCS_UTF8); }, [&] { return LocalPathToUTF8(bytes, "", 4); },
             [&] { return UTF8ToLocalPath(chars, utf8(""), 4); }}) {
        bytes[0] = 1;
        EXPECT_EQ(empty(), 0UL);
        EXPECT_EQ(bytes[0], 0);
    }
}

TEST(EntryPoints, CountAndCompare) {
    EXPECT_EQ(GetNumUnits("\x82\xA0z", VYNCS_WCP932), 2UL);
    EXPECT_EQ(GetNumBytes(units(u"あz"), VYNCS_WCP932), 3UL);
    EXPECT_EQ(GetMaxUnitSize(VYNCS_EUC_TW), 3U);
    EXPECT_EQ(GetMinUnitSize(VYNCS_UTF32), 4U);
    Units const longText(100, u'x');
    for (unsigned length = 0; length <= 100; ++length) // every alignment against the blocks of the scan
        ASSERT_EQ(VynCharSetWStrlen(units(longText) + length), 100 - length);
    EXPECT_TRUE(VynCharSetWStrEqual(nullptr, nullptr));
    EXPECT_FALSE(VynCharSetWStrEqual(nullptr, units(u"")));
    EXPECT_TRUE(VynCharSetWStrEqual(units(u""), units(u"")));
    EXPECT_TRUE(VynCharSetWStrEqual(units(u"ab"), units(u"ab")));
    EXPECT_FALSE(VynCharSetWStrEqual(units(u"ab"), units(u"abc")));
    EXPECT_FALSE(VynCharSetWStrEqual(units(u"ab"), units(u"aB")));
}

// Run once for each default set that matters, see CMakeLists.txt.
TEST(EntryPoints, KeepPathsReadable) {
    auto const is = [](VynCharSet cs) {
        return VynCharSetConverter::getConverter(VYNCS_OS_DEFAULT) == VynCharSetConverter::getConverter(cs);
    };
    auto const toPath = [](std::string const& text, int size) {
        return written<char>(static_cast<std::size_t>(size),
                             [&](char* dst, std::size_t) { return UTF8ToLocalPath(dst, utf8(text), size); });
    };
    auto const fromPath = [](std::string const& text, int size) {
        return written<char>(static_cast<std::size_t>(size), [&](char* dst, std::size_t) {
            return LocalPathToUTF8(reinterpret_cast<unsigned char*>(dst), text.c_str(), size);
        });
    };
    struct Row {
        char const* local;
        char const* utf8;
    };
    for (Row const& row :
         {Row{"U+00E9", "é"}, Row{"u+00e9U+00G9", "u+00e9U+00G9"}, Row{"U+D83DU+DE00", "\xF0\x9F\x98\x80"},
          Row{"UU+0041+0042", "UA+0042"}, Row{"U+0055+0041", "U+0041"}, Row{"U+004", "U+004"}, Row{"aU+0000b", "a"},
          Row{"U+D800z", "?z"}})
        EXPECT_EQ(fromPath(row.local, 40), row.utf8) << row.local;
    EXPECT_EQ(fromPath("U+00E9U+00E9", 4), "é");

    std::string const name = "日é.txt";
    EXPECT_EQ(toPath(name, 40), is(VYNCS_UTF8)         ? name
                                : is(VYNCS_ISO_8859_1) ? "U+65E5\xE9.txt"
                                : is(VYNCS_WCP932)     ? "\x93\xFAU+00E9.txt"
                                                       : "unexpected default");
    EXPECT_EQ(fromPath(toPath(name, 40), 40), name);

    // Lone surrogates: as many escapes as fit, none of them cut, nothing behind the end, whatever the room.
    for (std::string const& unit : {"\xED\xA0\x80"s, "\xED\xA0\x80x"s, "é\xED\xA0\x80"s, "\xED\xA0\x80\xED\xB0"s}) {
        std::string text;
        for (int i = 0; i < 1500; ++i)
            text += unit;
        std::string const whole = toPath(text, 1 << 16);
        EXPECT_GE(whole.size(), 1500U * 6 / 2);
        for (int size : {1, 2, 6, 7, 8, 13, 14, 100, 4093, 4094, 4095, 4096}) {
            std::string const cut = toPath(text, size);
            EXPECT_EQ(cut, whole.substr(0, cut.size()));
            EXPECT_GT(cut.size() + 7, static_cast<std::size_t>(size)); // no room left for one more
        }
    }
}

// Any bytes in any set: each source ends, and each destination ends, at an inaccessible page.
TEST(EntryPoints, KeepToTheirBuffers) {
    std::mt19937 random(7);
    static char const* const pieces[] = {"a",    "U+00E9",           "U+",           "\x81",
                                         "\x8F", "\xF0\x9F\x98\x80", "\xED\xA0\x80", "\x82\xA0",
                                         "\xFE", "\x81\x30\x81",     "\x1B$"};
    GuardedBuffer sourceMemory(256);
    for (int round = 0; round < 400; ++round) {
        std::string text;
        while (text.size() < 60 && random() % 8 != 0)
            text += pieces[random() % std::size(pieces)];
        auto* const source = reinterpret_cast<char*>(sourceMemory.end()) - text.size() - 1;
        std::memcpy(source, text.c_str(), text.size() + 1);
        auto const* const bytes = reinterpret_cast<unsigned char const*>(source);
        std::size_t const size = random() % 80;
        for (VynCharSet const cs : allSets) {
            std::size_t const terminator = GetNullCharSize(cs);
            written<char>(size, [&](char* dst, std::size_t room) {
                return LocalToUTF8(reinterpret_cast<unsigned char*>(dst), source, room, cs);
            });
            written<char>(
                size, [&](char* dst, std::size_t room) { return UTF8ToLocal(dst, bytes, room, cs); }, terminator);
            if (terminator == 1) {
                written<char16_t>(size, [&](char16_t* dst, std::size_t room) {
                    return LocalToUTF16(reinterpret_cast<unsigned short*>(dst), source, static_cast<int>(room), cs);
                });
                GetNumUnits(source, cs);
            }
        }
        written<char>(size, [&](char* dst, std::size_t room) {
            return LocalPathToUTF8(reinterpret_cast<unsigned char*>(dst), source, static_cast<int>(room));
        });
        written<char>(size,
                      [&](char* dst, std::size_t room) { return UTF8ToLocalPath(dst, bytes, static_cast<int>(room)); });

        // The same bytes as UTF-16.
        Units wide(text.begin(), text.end());
        for (char16_t& unit : wide)
            unit = static_cast<char16_t>(random() % 3 == 0 ? 0xD800 + random() % 0x800 : unit & 0xFF);
        std::replace(wide.begin(), wide.end(), u'\0', u'x');
        GuardedBuffer wideMemory((wide.size() + 1) * 2);
        auto* const wideSource = reinterpret_cast<unsigned short*>(wideMemory.end()) - wide.size() - 1;
        std::memcpy(wideSource, wide.c_str(), (wide.size() + 1) * 2);
        for (VynCharSet const cs : allSets) {
            std::size_t const terminator = GetNullCharSize(cs);
            written<char>(
                size, [&](char* dst, std::size_t room) { return UTF16ToLocal(dst, wideSource, room, cs); }, terminator);
            GetNumBytes(wideSource, cs);
        }
        written<char>(size, [&](char* dst, std::size_t room) {
            return UTF16ToUTF8(reinterpret_cast<unsigned char*>(dst), wideSource, room);
        });
    }
}

TEST(EntryPoints, TakeHugeSourcesOnASmallStack) {
    static constexpr std::size_t length = 100UL << 20;
    static std::string const text(length, 'x');
    static std::string dst(length + 1, '\0');
    auto const convertAll = [](void*) -> void* {
        auto* const bytes = reinterpret_cast<unsigned char*>(dst.data());
        EXPECT_EQ(LocalToUTF8(bytes, text.c_str(), length + 1, VYNCS_KOI8R), length);
        EXPECT_EQ(LocalToUTF8(bytes, text.c_str(), 9, VYNCS_GB18030), 8UL);
        EXPECT_EQ(UTF8ToLocal(dst.data(), utf8(text), length + 1, VYNCS_WCP932), length);
        EXPECT_EQ(LocalPathToUTF8(bytes, text.c_str(), 9), 8UL);
        EXPECT_EQ(UTF8ToLocalPath(dst.data(), utf8(text), static_cast<int>(length + 1)), length);
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 512 << 10);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, convertAll, nullptr), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(EntryPoints, ReturnNothingWhereMemoryRunsOut) {
    std::string const text(100000, 'x');
    std::string dst(text.size() + 1, '\0');
    auto* const bytes = reinterpret_cast<unsigned char*>(dst.data());
    int const size = static_cast<int>(dst.size());
    memoryIsOut = true;
    unsigned long const results[] = {LocalToUTF8(bytes, text.c_str(), dst.size(), VYNCS_KOI8R),
                                     UTF8ToLocal(dst.data(), utf8(text), dst.size(), VYNCS_KOI8R),
                                     LocalPathToUTF8(bytes, text.c_str(), size),
                                     UTF8ToLocalPath(dst.data(), utf8(text), size)};
    memoryIsOut = false;
    EXPECT_EQ(std::count(std::begin(results), std::end(results), 0UL), 4);
    EXPECT_EQ(LocalToUTF8(bytes, text.c_str(), dst.size(), VYNCS_KOI8R), text.size());
}

} // namespace
