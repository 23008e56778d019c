#include "tests/support/ConvertKit.h"

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

TEST(Utf32Converter, AnswersNull) {
    unsigned char bytes[] = {'A', 0};
    Values values{'B', 0};
    bool illegal = true;
    EXPECT_EQ(converterOf(VYNCS_UTF32).fromUTF8(nullptr, bytes, 2, ILLCHAR_STOP, &illegal), 0UL);
    EXPECT_EQ(converterOf(VYNCS_UTF32).fromUTF8(values.data(), nullptr, 2, ILLCHAR_STOP, nullptr), 0UL);
    EXPECT_EQ(converterOf(VYNCS_UTF32).toUTF8(nullptr, values.data(), 2, ILLCHAR_STOP, &illegal), 0UL);
    EXPECT_EQ(converterOf(VYNCS_UTF32).toUTF8(bytes, nullptr, 2, ILLCHAR_STOP, nullptr), 0UL);
    EXPECT_EQ(values[0], 'B');
    EXPECT_EQ(bytes[0], 'A');
}

} // namespace
