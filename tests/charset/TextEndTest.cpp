// Texts in memory of exactly their size, for a checker that watches each read.

#include <vynulib/VynCharSetConverter.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace {

TEST(TextEnd, IsNotReadPast) {
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(VYNCS_WCP1252);
    unsigned char bytes[128];
    for (unsigned long length = 0; length <= 100; ++length) {
        auto const units = std::make_unique<unsigned short[]>(length + 1);
        std::fill_n(units.get(), length, static_cast<unsigned short>('x'));
        EXPECT_EQ(VynCharSetWStrlen(units.get()), length);
        // The first character that can't be converted ends the text: it needs no terminator then.
        units[length] = 0xFFFE;
        EXPECT_EQ(converter.fromUTF16(bytes, units.get(), 120, ILLCHAR_STOP, nullptr), length);
    }
}

} // namespace
