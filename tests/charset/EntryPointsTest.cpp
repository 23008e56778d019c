#include "tests/support/FailingAllocation.h"
#include "tests/support/GuardedBuffer.h"
#include "tests/support/Random.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynCharSetConverterUTF8.h>

#include <gtest/gtest.h>

#include <pthread.h>

#include <algorithm>
#include <string>

namespace {

using namespace std::string_literals;
using Units = std::u16string;

constexpr VynCharSet allSets[] = {
#define ROW(name, number) name,
    VYN_CHARSETS(ROW)
#undef ROW
};

unsigned char* utf8(char* text) {
    return reinterpret_cast<unsigned char*>(text);
}
unsigned char const* utf8(char const* text) {
    return reinterpret_cast<unsigned char const*>(text);
}
unsigned short* units(char16_t* text) {
    return reinterpret_cast<unsigned short*>(text);
}

constexpr std::size_t guardedBytes = 1 << 17;

/// The text and its terminator, which ends at an inaccessible page. It stays until the next call.
template <class Element>
Element* guarded(std::basic_string<Element> const& text) {
    static GuardedBuffer memory(guardedBytes);
    auto* const end = reinterpret_cast<Element*>(memory.end());
    return std::copy_n(text.c_str(), text.size() + 1, end - text.size() - 1) - text.size() - 1;
}

/// The output of `convert(dst)`, called with room for `size` elements that end at an inaccessible page.
template <class Element, class Convert>
std::basic_string<Element> written(std::size_t size, Convert convert, std::size_t terminator = 1) {
    static GuardedBuffer memory(guardedBytes);
    auto* const dst = reinterpret_cast<Element*>(memory.end()) - size;
    std::fill_n(dst, size, Element(0x5A));
    unsigned long const length = convert(dst);
    if (length != 0) {
        EXPECT_LE(length + terminator, size);
        EXPECT_EQ(std::count(dst + length, dst + length + terminator, Element(0)), static_cast<long>(terminator));
    }
    return {dst, length};
}

std::string localToUtf8(std::string const& text, VynCharSet cs, std::size_t size = 64) {
    return written<char>(size, [&](char* dst) { return LocalToUTF8(utf8(dst), guarded(text), size, cs); });
}
std::string utf8ToLocal(std::string const& text, VynCharSet cs, std::size_t size = 64) {
    auto const convert = [&](char* dst) { return UTF8ToLocal(dst, utf8(guarded(text)), size, cs); };
    return written<char>(size, convert, GetNullCharSize(cs));
}
Units localToUtf16(std::string const& text, VynCharSet cs, std::size_t size) {
    auto const room = static_cast<int>(size);
    return written<char16_t>(size, [&](char16_t* dst) { return LocalToUTF16(units(dst), guarded(text), room, cs); });
}
std::string utf16ToLocal(Units const& text, VynCharSet cs, std::size_t size) {
    auto const convert = [&](char* dst) { return UTF16ToLocal(dst, units(guarded(text)), size, cs); };
    return written<char>(size, convert, GetNullCharSize(cs));
}
Units utf8ToUtf16(std::string const& text, std::size_t size) {
    return written<char16_t>(size, [&](char16_t* dst) { return UTF8ToUTF16(units(dst), utf8(guarded(text)), size); });
}
std::string utf16ToUtf8(Units const& text, std::size_t size) {
    return written<char>(size, [&](char* dst) { return UTF16ToUTF8(utf8(dst), units(guarded(text)), size); });
}
std::string fromPath(std::string const& text, std::size_t size) {
    auto const room = static_cast<int>(size);
    return written<char>(size, [&](char* dst) { return LocalPathToUTF8(utf8(dst), guarded(text), room); });
}
std::string toPath(std::string const& text, std::size_t size) {
    auto const room = static_cast<int>(size);
    return written<char>(size, [&](char* dst) { return UTF8ToLocalPath(dst, utf8(guarded(text)), room); });
}

TEST(EntryPoints, ConvertBetweenLocalTextAndUtf8) {
    struct Row {
        VynCharSet cs;
        std::string local, utf8;
    };
    for (Row const& row :
         {Row{VYNCS_KOI8R, "\xF0\xD2\xC9", "При"}, Row{VYNCS_WCP932, "\x82\xA0", "あ"},
          Row{VYNCS_EUC_TW, "\xC3\xA9", "é"}, Row{VYNCS_UTF16ESC, "U+00E9", "é"}, Row{VYNCS_ISO_8859_1, "\xE9", "é"}}) {
        EXPECT_EQ(localToUtf8(row.local, row.cs), row.utf8);
        EXPECT_EQ(utf8ToLocal(row.utf8, row.cs), row.local);
    }
    // What is not valid is ISO 8859-1, the whole of it. Four bytes of UTF-8 raise the flag, although they are valid.
    for (Row const& row : {Row{VYNCS_UTF8, "\xE9", "é"}, Row{VYNCS_UTF8, "\xC3\xA9\xE9", "Ã©é"},
                           Row{VYNCS_UTF8, "\xF0\x9F\x98\x80", "\xC3\xB0\xC2\x9F\xC2\x98\xC2\x80"},
                           Row{VYNCS_WCP932, "\x87\x40", "\xC2\x87@"}, Row{VYNCS_UTF16, "A\0"s, ""},
                           // As many units as bytes stand before the first zero byte, which may lie within a value.
                           Row{VYNCS_UTF32, "A\0\0\0B\0\0\0\0\0\0\0"s, "A"},
                           Row{VYNCS_UTF32, "\xFF\xFF\0\0\xFF\xFF\0\0\0\0\0\0"s, "\uFFFF\uFFFF"}})
        EXPECT_EQ(localToUtf8(row.local, row.cs), row.utf8) << row.cs;
    EXPECT_EQ(utf8ToLocal("日é\xFF", VYNCS_ISO_8859_1), "?\xE9?");
    EXPECT_EQ(utf8ToLocal("aé", VYNCS_UTF16), "a\0\xE9\0"s);
}

/// Drops U+200B, as a set of somebody's own may.
class DroppingConverter : public VynCharSetConverterUTF8 {
public:
    DroppingConverter() : VynCharSetConverterUTF8(VYNCS_ISO_2022KR) {}

    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override {
        Units kept;
        for (; *src != 0; ++src)
            if (*src != 0x200B)
                kept.push_back(static_cast<char16_t>(*src));
        return VynCharSetConverterUTF8::fromUTF16(dst, units(kept.data()), dstCap, op, illegal);
    }
};

TEST(EntryPoints, ConvertAllThatARegisteredSetMayUse) {
    static DroppingConverter converter;
    g_oCnvtMgr.insert(VYNCS_ISO_2022KR, &converter, true);
    std::string text;
    for (int i = 0; i < 20; ++i)
        text += "\u200B";
    EXPECT_EQ(utf8ToLocal(text + "abc", VYNCS_ISO_2022KR, 5), "abc");
}

TEST(EntryPoints, ConvertFromAndToUtf16) {
    EXPECT_EQ(localToUtf16("\xF0\xD2\xC9", VYNCS_KOI8R, 3), u"Пр");
    EXPECT_EQ(localToUtf16("\xF0\x9F\x98\x80", VYNCS_UTF8, 10), u"\u00F0\u009F\u0098\u0080");
    EXPECT_EQ(localToUtf16("ab\xFF", VYNCS_UTF8, 3), u"ab"); // what is beyond the room is not looked at
    EXPECT_EQ(localToUtf16("A\0\0\0\x00\xF6\x01\0\0\0\0"s, VYNCS_UTF32, 10), u"A\U0001F600");
    EXPECT_EQ(utf8ToUtf16("a\xF0\x9F\x98\x80", 3), u"a\uFFFD");
    EXPECT_EQ(utf16ToUtf8(u"éé", 3), "é");
    EXPECT_EQ(utf16ToUtf8({0xD800, u'a'}, 9), "?a");
    EXPECT_EQ(utf16ToLocal(u"Прé", VYNCS_KOI8R, 4), "\xF0\xD2?");
    EXPECT_EQ(utf16ToLocal(u"ab", VYNCS_UTF32, 11), "a\0\0\0"s);
}

TEST(EntryPoints, AnswerNullEmptyAndTooSmall) {
    char chars[4] = {1, 2, 3, 4};
    char16_t wide[2] = {1, 2};
    auto const* const empty = utf8("");
    for (int const missing : {0, 1, 2, 3}) { // destination, source, size; a negative one
        char* const dst = missing == 0 ? nullptr : chars;
        auto* const dst16 = units(missing == 0 ? nullptr : wide);
        char const* const src = missing == 1 ? nullptr : "a";
        unsigned short const a[] = {u'a', 0}, *const src16 = missing == 1 ? nullptr : a;
        int const size = missing == 2 ? 0 : missing == 3 ? -5 : 2;
        EXPECT_EQ(LocalToUTF16(dst16, src, size, VYNCS_UTF8) + LocalPathToUTF8(utf8(dst), src, size) +
                      UTF8ToLocalPath(dst, utf8(src), size),
                  0UL);
        auto const room = static_cast<unsigned long>(std::max(size, 0));
        EXPECT_EQ(LocalToUTF8(utf8(dst), src, room, VYNCS_UTF8) + UTF8ToLocal(dst, utf8(src), room, VYNCS_UTF8) +
                      UTF16ToLocal(dst, src16, room, VYNCS_UTF8) + UTF8ToUTF16(dst16, utf8(src), room) +
                      UTF16ToUTF8(utf8(dst), src16, room),
                  0UL);
    }
    EXPECT_EQ(UTF8ToLocal(chars, utf8("\x80\x80"), 4, VYNCS_UTF8), 0UL); // decodes to nothing
    EXPECT_EQ(UTF8ToLocal(chars, empty, 3, VYNCS_UTF32) + UTF16ToLocal(chars, units(wide), 1, VYNCS_UTF16), 0UL);
    EXPECT_EQ(GetNumUnits(nullptr, VYNCS_UTF8) + GetNumBytes(nullptr, VYNCS_UTF8) + VynCharSetWStrlen(nullptr), 0UL);
    EXPECT_TRUE(std::string(chars, 4) == "\1\2\3\4" && wide[0] == 1);

    EXPECT_EQ(LocalToUTF8(utf8(chars), "", 4, VYNCS_UTF8) + LocalPathToUTF8(utf8(chars + 1), "", 3), 0UL);
    EXPECT_EQ(std::string(chars, 4), "\0\0\3\4"s);
    std::fill_n(chars, 4, 'x');
    EXPECT_EQ(UTF8ToLocal(chars, empty, 4, VYNCS_UTF16) + UTF8ToLocalPath(chars + 3, empty, 1), 0UL);
    EXPECT_EQ(std::string(chars, 4), "\0\0x\0"s);
}

TEST(EntryPoints, CountAndCompare) {
    auto const equal = [](Units a, Units b) { return VynCharSetWStrEqual(units(a.data()), units(b.data())); };
    EXPECT_EQ(GetNumUnits("\x82\xA0z", VYNCS_WCP932), 2UL);
    EXPECT_EQ(GetNumBytes(units(guarded(u"あz"s)), VYNCS_WCP932), 3UL);
    EXPECT_TRUE(GetMaxUnitSize(VYNCS_EUC_TW) == 3 && GetMinUnitSize(VYNCS_GB18030) == 1);
    for (unsigned length = 0; length <= 100; ++length) // every alignment against the blocks of the scan
        ASSERT_EQ(VynCharSetWStrlen(units(guarded(Units(length, u'x')))), length);
    EXPECT_TRUE(VynCharSetWStrEqual(nullptr, nullptr) && !VynCharSetWStrEqual(nullptr, units(Units().data())));
    EXPECT_TRUE(equal(u"", u"") && equal(u"ab", u"ab"));
    EXPECT_FALSE(equal(u"ab", u"abc") || equal(u"abc", u"ab") || equal(u"ab", u"aB"));
}

// Run once for each default set that matters, see CMakeLists.txt.
TEST(EntryPoints, KeepPathsReadable) {
    auto const is = [](VynCharSet cs) {
        return VynCharSetConverter::getConverter(VYNCS_OS_DEFAULT) == VynCharSetConverter::getConverter(cs);
    };
    std::pair<char const*, char const*> const escaped[] = {{"U+00E9", "é"},
                                                           {"u+00e9U+00G9", "u+00e9U+00G9"},
                                                           {"U+D83DU+DE00", "\xF0\x9F\x98\x80"},
                                                           {"UU+0041+0042", "UA+0042"},
                                                           {"U+0055+0041", "U+0041"},
                                                           {"U+004", "U+004"},
                                                           {"aU+0000b", "a"},
                                                           {"U+D800z", "?z"}};
    for (auto const& [local, utf8] : escaped)
        EXPECT_EQ(fromPath(local, 40), utf8) << local;
    EXPECT_EQ(fromPath("U+00E9U+00E9", 4), "é");

    std::string const name = "日é.txt";
    EXPECT_EQ(toPath(name, 40), is(VYNCS_UTF8)         ? name
                                : is(VYNCS_ISO_8859_1) ? "U+65E5\xE9.txt"
                                : is(VYNCS_WCP932)     ? "\x93\xFAU+00E9.txt"
                                                       : "unexpected default");
    EXPECT_EQ(fromPath(toPath(name, 40), 40), name);

    // Lone surrogates: as many escapes as fit, none of them cut, nothing behind the end, whatever the room.
    for (std::string const unit : {"\xED\xA0\x80", "\xED\xA0\x80x", "é\xED\xA0\x80", "\xED\xA0\x80\xED\xB0"}) {
        std::string text;
        for (int i = 0; i < 1500; ++i)
            text += unit;
        std::string const whole = toPath(text, 1 << 16);
        EXPECT_GE(whole.size(), 1500U * 6 / 2);
        for (unsigned const size : {1U, 2U, 6U, 7U, 8U, 13U, 14U, 100U, 4093U, 4094U, 4095U, 4096U}) {
            std::string const cut = toPath(text, size);
            EXPECT_EQ(cut, whole.substr(0, cut.size()));
            EXPECT_GT(cut.size() + 7, size); // no room left for one more
        }
    }
}

// Any bytes and any units in any set.
TEST(EntryPoints, KeepToTheirBuffers) {
    TestRandom random;
    SCOPED_TRACE(random.seed());
    static char const* const pieces[] = {"a",    "U+00E9",           "U+",           "\x81",
                                         "\x8F", "\xF0\x9F\x98\x80", "\xED\xA0\x80", "\x82\xA0",
                                         "\xFE", "\x81\x30\x81",     "\x1B$"};
    for (int round = 0; round < 400; ++round) {
        std::string text;
        while (text.size() < 60 && random.below(8) != 0)
            text += pieces[random.below(std::size(pieces))];
        Units wide(text.begin(), text.end());
        for (char16_t& unit : wide)
            unit = static_cast<char16_t>(random.below(3) == 0 ? 0xD800 + random.below(0x800) : unit & 0xFF);
        std::size_t const size = random.below(80);
        for (VynCharSet const cs : allSets) {
            std::string const local = text + std::string(2 * GetNullCharSize(cs) - 1, '\0'); // ends in every set
            localToUtf8(local, cs, size);
            localToUtf16(local, cs, size);
            GetNumUnits(guarded(local), cs);
            utf8ToLocal(text, cs, size);
            utf16ToLocal(wide, cs, size);
            GetNumBytes(units(guarded(wide)), cs);
        }
        fromPath(text, size);
        toPath(text, size);
        utf16ToUtf8(wide, size);
    }
}

TEST(EntryPoints, TakeHugeSourcesOnASmallStack) {
    static constexpr std::size_t length = 100UL << 20;
    static std::string const text(length, 'x');
    static std::string dst(length + 1, '\0');
    auto const convertAll = [](void*) -> void* {
        EXPECT_EQ(LocalToUTF8(utf8(dst.data()), text.c_str(), length + 1, VYNCS_KOI8R), length);
        EXPECT_EQ(UTF8ToLocal(dst.data(), utf8(text.c_str()), length + 1, VYNCS_WCP932), length);
        EXPECT_EQ(LocalPathToUTF8(utf8(dst.data()), text.c_str(), 9), 8UL);
        EXPECT_EQ(UTF8ToLocalPath(dst.data(), utf8(text.c_str()), static_cast<int>(length + 1)), length);
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
    static std::string const text(100000, 'x');
    static std::string dst(text.size() + 1, '\0');
    auto const convertAll = [] {
        auto const size = static_cast<int>(dst.size());
        return LocalToUTF8(utf8(dst.data()), text.c_str(), dst.size(), VYNCS_KOI8R) +
               UTF8ToLocal(dst.data(), utf8(text.c_str()), dst.size(), VYNCS_KOI8R) +
               LocalPathToUTF8(utf8(dst.data()), text.c_str(), size) +
               UTF8ToLocalPath(dst.data(), utf8(text.c_str()), size);
    };
    allocationsLeft = 0;
    unsigned long const withoutMemory = convertAll();
    allocationsLeft = unlimitedAllocations;
    EXPECT_EQ(withoutMemory, 0UL);
    EXPECT_EQ(convertAll(), 4 * text.size());
}

} // namespace
