#include "tests/support/FailingAllocation.h"
#include "tests/support/GuardedBuffer.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynCharSetConverterUTF8.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace {

using namespace std::string_literals;
using Units = std::u16string;

unsigned short* unitsAt(void* text) {
    return static_cast<unsigned short*>(text);
}

/// The bytes of the units.
std::string raw(Units const& units) {
    return {reinterpret_cast<char const*>(units.data()), units.size() * sizeof(char16_t)};
}

/// A text that ends at an inaccessible page. It stays until the next call.
void* guarded(std::string const& bytes) {
    static GuardedBuffer memory(1 << 17);
    unsigned char* const text = memory.end() - bytes.size();
    std::copy(bytes.begin(), bytes.end(), text);
    return text;
}

/// A conversion, by the one signature that all can be called with.
struct EntryPoint {
    std::size_t targetElement;
    bool toLocal; ///< To the set that it is called with.
    std::function<unsigned long(void* dst, void const* src, long size, VynCharSet cs)> call;

    std::size_t terminator(VynCharSet cs) const { return toLocal ? GetNullCharSize(cs) : targetElement; }

    /// The bytes that it writes.
    std::string operator()(std::string const& text, std::size_t size, VynCharSet cs = VYNCS_UTF8) const {
        std::string dst(size * targetElement, '\x5A');
        dst.resize(call(dst.data(), text.c_str(), static_cast<long>(size), cs) * targetElement);
        return dst;
    }
};

template <class Target, class Source, class Size, class... Set>
EntryPoint entryPoint(unsigned long (*function)(Target*, Source const*, Size, Set...), bool toLocal = false) {
    return {sizeof(Target), toLocal, [function](void* dst, void const* src, long size, [[maybe_unused]] VynCharSet cs) {
                auto const bind = [&](auto... set) {
                    return function(static_cast<Target*>(dst), static_cast<Source const*>(src), static_cast<Size>(size),
                                    set...);
                };
                if constexpr (sizeof...(Set) != 0)
                    return bind(cs);
                else
                    return bind();
            }};
}

EntryPoint const localToUtf8 = entryPoint(LocalToUTF8), utf8ToLocal = entryPoint(UTF8ToLocal, true),
                 localToUtf16 = entryPoint(LocalToUTF16), utf16ToLocal = entryPoint(UTF16ToLocal, true),
                 utf8ToUtf16 = entryPoint(UTF8ToUTF16), utf16ToUtf8 = entryPoint(UTF16ToUTF8),
                 fromPath = entryPoint(LocalPathToUTF8), toPath = entryPoint(UTF8ToLocalPath);
EntryPoint const* const entryPoints[] = {&localToUtf8, &utf8ToLocal, &localToUtf16, &utf16ToLocal,
                                         &utf8ToUtf16, &utf16ToUtf8, &fromPath,     &toPath};
EntryPoint const* const withScratch[] = {&localToUtf8, &utf8ToLocal, &fromPath, &toPath};

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
        return VynCharSetConverterUTF8::fromUTF16(dst, unitsAt(kept.data()), dstCap, op, illegal);
    }
};

TEST(EntryPoints, ConvertAllThatARegisteredSetMayUse) {
    static DroppingConverter converter;
    g_oCnvtMgr.insert(VYNCS_ISO_2022KR, &converter, true);
    std::string text;
    for (int i = 0; i < 20; ++i)
        text += "\u200B";
    EXPECT_EQ(utf8ToLocal(text + "abc", 5, VYNCS_ISO_2022KR), "abc");
}

TEST(EntryPoints, AnswerNullEmptyAndTooSmall) {
    alignas(4) char const text[] = "a\0\0", empty[4] = {}; // in every set
    alignas(4) char dst[8];
    auto const untouched = [&] { return std::count(dst, dst + 8, 'x') == 8; };
    std::fill_n(dst, 8, 'x');
    for (EntryPoint const* const entry : entryPoints) {
        EXPECT_EQ(entry->call(nullptr, text, 2, VYNCS_UTF8), 0UL);
        EXPECT_EQ(entry->call(dst, nullptr, 2, VYNCS_UTF8), 0UL);
        EXPECT_EQ(entry->call(dst, text, 0, VYNCS_UTF8), 0UL);
    }
    for (EntryPoint const* const entry : {&localToUtf16, &fromPath, &toPath})
        EXPECT_EQ(entry->call(dst, text, -5, VYNCS_UTF8), 0UL);
    for (EntryPoint const* const entry : {&utf8ToLocal, &utf16ToLocal})
        EXPECT_EQ(entry->call(dst, text, 3, VYNCS_UTF32), 0UL);
    EXPECT_TRUE(untouched());

    for (EntryPoint const* const entry : entryPoints) {
        std::fill_n(dst, 8, 'x');
        EXPECT_EQ(entry->call(dst, empty, 4, VYNCS_UTF32), 0UL);
        auto const zeros = static_cast<std::ptrdiff_t>(entry->terminator(VYNCS_UTF32));
        EXPECT_EQ(std::count(dst, dst + zeros, '\0'), zeros);
        EXPECT_EQ(std::count(dst + zeros, dst + 8, 'x'), 8 - zeros);
    }
}

TEST(EntryPoints, CountAndCompare) {
    auto const equal = [](Units a, Units b) { return VynCharSetWStrEqual(unitsAt(a.data()), unitsAt(b.data())); };
    EXPECT_EQ(GetNumUnits("\x82\xA0z", VYNCS_WCP932), 2UL);
    EXPECT_EQ(GetNumUnits(nullptr, VYNCS_UTF8), 0UL);
    EXPECT_EQ(GetNumBytes(unitsAt(guarded(raw(u"あz\0"s))), VYNCS_WCP932), 3UL);
    EXPECT_EQ(GetNumBytes(nullptr, VYNCS_UTF8), 0UL);
    EXPECT_EQ(GetMaxUnitSize(VYNCS_EUC_TW), 3U);
    EXPECT_EQ(GetMinUnitSize(VYNCS_UTF32), 4U);
    for (unsigned length = 0; length <= 100; ++length) // every alignment against the blocks of the scan
        ASSERT_EQ(VynCharSetWStrlen(unitsAt(guarded(raw(Units(length, u'x') + u'\0')))), length);
    EXPECT_EQ(VynCharSetWStrlen(nullptr), 0U);
    EXPECT_TRUE(VynCharSetWStrEqual(nullptr, nullptr));
    EXPECT_FALSE(VynCharSetWStrEqual(nullptr, unitsAt(Units().data())));
    EXPECT_TRUE(equal(u"ab\0x"s, u"ab\0y"s));
    EXPECT_FALSE(equal(u"ab", u"abc"));
    EXPECT_FALSE(equal(u"ab", u"aB"));
}

// Run once for each default set that matters, see CMakeLists.txt.
TEST(EntryPoints, KeepPathsReadable) {
    EXPECT_EQ(VynCharSetConverter::getConverter(VYNCS_OS_DEFAULT),
              VynCharSetConverter::getConverter(g_oCnvtMgr.getDefaultCharSet()));
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
    if (char dst = 'x'; is(VYNCS_UTF8)) { // in which a path can decode to nothing
        EXPECT_EQ(fromPath.call(&dst, "\x80", 1, {}), 0UL);
        EXPECT_EQ(dst, 'x');
    }

    std::string const name = "日é.txt";
    EXPECT_EQ(toPath(name, 40), is(VYNCS_UTF8)         ? name
                                : is(VYNCS_ISO_8859_1) ? "U+65E5\xE9.txt"
                                : is(VYNCS_WCP932)     ? "\x93\xFAU+00E9.txt"
                                                       : "unexpected default");
    EXPECT_EQ(fromPath(toPath(name, 40), 40), name);

    toPath(std::string(100, 'x'), 101); // what is left in memory must not follow a shorter text
    EXPECT_EQ(toPath("\xED\xA0\x80", 40), "U+D800");

    // Lone surrogates: as many escapes as fit, none of them cut, nothing after the end, whatever the room.
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

TEST(EntryPoints, NeedMemoryForForeignConvertersOnly) {
    static DroppingConverter converter;
    g_oCnvtMgr.insert(VYNCS_ISO_2022KR, &converter, true);
    std::string const text(100000, 'x');
    std::string dst(text.size() + 1, '\0');
    for (EntryPoint const* const entry : withScratch)
        for (VynCharSet const cs : {VYNCS_KOI8R, VYNCS_ISO_2022KR}) {
            auto const convert = [&] { return entry->call(dst.data(), text.c_str(), std::ssize(dst), cs); };
            EXPECT_EQ(convert(), text.size()); // with it all tables are there
            bool const foreign = cs == VYNCS_ISO_2022KR && (entry == &localToUtf8 || entry == &utf8ToLocal);
            allocationsLeft = 0;
            unsigned long const withoutMemory = convert();
            allocationsLeft = unlimitedAllocations;
            EXPECT_EQ(withoutMemory, foreign ? 0 : text.size());
        }
}

} // namespace
