#include "tests/support/ConvertKit.h"

#include <vynulib/VynCharSetConverterUTF32.h>

#include <string>

namespace {

using Values = std::vector<unsigned>;

VynCharSetConverter& converterOf(VynCharSet cs) {
    return *VynCharSetConverter::getConverter(cs);
}

// Not by the kit: an escape leaves the room and may step over the terminator.
TEST(Utf8Converter, EscapesAtTheUsualToll) {
    struct {
        Units units; // ended by two zero units
        unsigned long room;
        std::string bytes;
    } const rows[] = {
        {{0xD800, 0x41, 0, 0}, 20, "U+D800"},
        {{0xD800, 0x41, 0, 0}, 5, ""},
        {{0xD800, 0, 0x42, 0, 0}, 20, "U+D800B"},
        {{0x42, 0xD800, 0x41, 0, 0}, 7, "BU+D800"},
        {{0xD800, 0x41, 0x42, 0x43, 0, 0}, 7, "U+D800BC"}, // eight bytes in a room of seven
    };
    for (auto const& [units, room, bytes] : rows) {
        std::string dst(bytes.size() + 2, 'x');
        bool illegal = false;
        EXPECT_EQ(converterOf(VYNCS_UTF8).fromUTF16(dst.data(), units.data(), room, ILLCHAR_ESCAPE, &illegal),
                  bytes.size());
        EXPECT_EQ(dst, bytes + '\0' + 'x');
        EXPECT_TRUE(illegal);
    }
}

TEST(Utf8Converter, NeverScansBeyondTheRoom) {
    // With the whole of it scanned in each call, this would take minutes.
    std::string const text(32 << 20, 'x');
    Units dst(16);
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(converterOf(VYNCS_UTF8).toUTF16(dst.data(), text.c_str(), 8, ILLCHAR_REPLACE, nullptr, -1), 8UL);
}

TEST(WideConverters, TakeWholeElementsFromAnyAddress) {
    Values const values{0x00420041, 0x10FFFF, 0};
    Bytes bytes(1 + sizeof(unsigned) * values.size());
    std::copy_n(reinterpret_cast<unsigned char const*>(values.data()), bytes.size() - 1, bytes.data() + 1);
    for (void const* const text : {static_cast<void const*>(values.data()), static_cast<void const*>(&bytes[1])}) {
        EXPECT_EQ(converterOf(VYNCS_UTF16).getNumUnits(text, 7), 3UL);
        EXPECT_EQ(converterOf(VYNCS_UTF16).getNumUnits(text, 1), 0UL);
        EXPECT_EQ(converterOf(VYNCS_UTF32).getNumUnits(text, 7), 1UL);
        Units dst(9);
        EXPECT_EQ(converterOf(VYNCS_UTF16).toUTF16(dst.data(), text, 8, ILLCHAR_STOP, nullptr, 9), 4UL);
        EXPECT_EQ(converterOf(VYNCS_UTF32).toUTF16(dst.data(), text, 8, ILLCHAR_STOP, nullptr, 9), 4UL);
    }
}

TEST(Utf32Converter, ConvertsToUtf8TestingTheRoomAfterEachCharacter) {
    struct {
        Values values; // ended by a zero value
        unsigned long room;
        std::string bytes;
        bool illegal = false, terminated = true;
    } const rows[] = {
        {{0xDFFF, 0}, 20, "\xEF\xBF\xBD", true},
        {{0x80000000, 0}, 20, "\xEF\xBF\xBD", true},
        {{0x7FFFFFFF, 0x3FFFFFF, 0}, 20, "\xFD\xBF\xBF\xBF\xBF\xBF\xFB\xBF\xBF\xBF\xBF"},
        {{0x1FFFFF, 0xFFFF, 0x7FF, 0x7F, 0}, 40, "\xF7\xBF\xBF\xBF\xEF\xBF\xBF\xDF\xBF\x7F"},
        {{0x41, 0x42, 0}, 1, "A"},
        {{0x1F600, 0}, 1, "\xF0\x9F\x98\x80", false, false}, // written past the room, and then not terminated
        {{0x41, 0}, 0, ""},
    };
    for (auto const& row : rows) {
        std::string dst(row.bytes.size() + 2, '\x5A');
        bool illegal = !row.illegal;
        auto* const out = reinterpret_cast<unsigned char*>(dst.data());
        EXPECT_EQ(converterOf(VYNCS_UTF32).toUTF8(out, row.values.data(), row.room, ILLCHAR_REPLACE, &illegal),
                  row.bytes.size());
        EXPECT_EQ(illegal, row.illegal);
        EXPECT_EQ(dst, row.bytes + (row.terminated ? '\0' : '\x5A') + '\x5A');
    }
}

TEST(Utf32Converter, ConvertsFromUtf8Strictly) {
    struct Row {
        char const* bytes;
        unsigned value;
        long advance;
    };
    auto& converter = dynamic_cast<VynCharSetConverterUTF32&>(converterOf(VYNCS_UTF32));
    for (auto const& [bytes, value, advance] :
         {Row{"A", 0x41, 1}, Row{"\xC0\x80", 0xFFFD, 2}, Row{"\xE2(\xA1", 0xFFFD, 1}, Row{"\xEF\xBF\xBE", 0xFFFD, 3},
          Row{"\xEF\xBF\xBF", 0xFFFD, 3}, Row{"\xED\xBF\xBF", 0xFFFD, 3}, Row{"\xF4\x90\x80\x80", 0x110000, 4},
          Row{"\xFD\xBF\xBF\xBF\xBF\xBF", 0x7FFFFFFF, 6}, Row{"\xF8\x88\x80\x80\x80", 0x200000, 5},
          Row{"\xF8\x87\xBF\xBF\xBF", 0xFFFD, 5}, Row{"\x80", 0xFFFD, 1}, Row{"\xFE", 0xFFFD, 1},
          Row{"\xFC\x84", 0xFFFD, 1}, Row{"\xE6\x97\xA5", 0x65E5, 3}}) {
        std::string text = bytes;
        auto* const start = reinterpret_cast<unsigned char*>(text.data());
        auto* at = start;
        EXPECT_EQ(converter.UTF32fromUTF8(&at), value) << bytes;
        EXPECT_EQ(at - start, advance) << bytes;
    }
    Values dst(4, 0xAAAAAAAA);
    bool illegal = true;
    unsigned char const text[] = {0xE6, 0x97, 0xA5, 0xC3, 'B', 0};
    EXPECT_EQ(converter.fromUTF8(dst.data(), text, 2, ILLCHAR_STOP, &illegal), 2UL);
    EXPECT_EQ(dst, (Values{0x65E5, 0xFFFD, 0, 0xAAAAAAAA}));
    EXPECT_FALSE(illegal);
    EXPECT_EQ(converter.fromUTF8(nullptr, text, 2, ILLCHAR_STOP, &illegal), 0UL);
    EXPECT_EQ(converter.fromUTF8(dst.data(), nullptr, 2, ILLCHAR_STOP, nullptr), 0UL);
}

} // namespace
