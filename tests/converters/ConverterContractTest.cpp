#include "tests/support/GuardedBuffer.h"

#include <vynulib/VynCharSetConverter.h>

#include <gtest/gtest.h>

namespace {

struct ServedSet {
    VynCharSet cs;
    unsigned minUnit;
    unsigned maxUnit;
    unsigned terminator;
};

// The multibyte and Unicode sets, and one of the single-byte ones, which all are of one class.
constexpr ServedSet servedSets[] = {
    {VYNCS_ISO_8859_8, 1, 1, 1}, {VYNCS_WCP932, 1, 2, 1}, {VYNCS_WCP936, 1, 2, 1},   {VYNCS_WCP949, 1, 2, 1},
    {VYNCS_WCP950, 1, 2, 1},     {VYNCS_BIG5, 1, 2, 1},   {VYNCS_SHIFTJIS, 1, 2, 1}, {VYNCS_SJIS0213, 1, 2, 1},
    {VYNCS_EUC_CN, 1, 2, 1},     {VYNCS_EUC_KR, 1, 2, 1}, {VYNCS_EUC_JP, 1, 3, 1},   {VYNCS_GB18030, 1, 4, 1},
    {VYNCS_UTF8, 1, 3, 1},       {VYNCS_UTF16, 2, 2, 2},  {VYNCS_UTF16ESC, 1, 6, 1}, {VYNCS_UTF32, 4, 4, 4},
};

class ConverterContract : public testing::TestWithParam<ServedSet> {
protected:
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(GetParam().cs);
};

TEST_P(ConverterContract, ReportsItsUnitSizes) {
    EXPECT_EQ(converter.getMinUnitSize(), GetParam().minUnit);
    EXPECT_EQ(converter.getMaxUnitSize(), GetParam().maxUnit);
    EXPECT_EQ(converter.getNullCharSize(), GetParam().terminator);
}

TEST_P(ConverterContract, TouchesNothingForNullPointers) {
    unsigned short units[2] = {0x41, 0};
    char bytes[8] = {'A'};
    bool illegal = true;
    EXPECT_EQ(converter.toUTF16(nullptr, bytes, 1, ILLCHAR_REPLACE, &illegal, -1), 0UL);
    EXPECT_EQ(converter.toUTF16(units, nullptr, 1, ILLCHAR_REPLACE, &illegal, -1), 0UL);
    EXPECT_EQ(converter.fromUTF16(nullptr, units, 4, ILLCHAR_REPLACE, &illegal), 0UL);
    EXPECT_EQ(converter.fromUTF16(bytes, nullptr, 4, ILLCHAR_REPLACE, &illegal), 0UL);
    EXPECT_EQ(units[0], 0x41);
    EXPECT_EQ(bytes[0], 'A');
    EXPECT_TRUE(illegal);
    EXPECT_EQ(converter.getNumUnits(nullptr, 4), 0UL);
    EXPECT_EQ(converter.getNumBytes(nullptr, 4), 0UL);
}

TEST_P(ConverterContract, CountsNoFurtherThanTheTerminator) {
    GuardedBuffer memory(16);
    unsigned const unit = GetParam().minUnit;
    unsigned char* const text = memory.end() - unit - GetParam().terminator;
    for (char const byte : {'A', '\x81'}) // the latter is a lead byte, but in UTF-8 a stray one
        for (unsigned const units : {2U, 3U, 9U}) {
            text[0] = static_cast<unsigned char>(byte);
            bool const ends = GetParam().cs == VYNCS_UTF8 && byte != 'A';
            EXPECT_EQ(converter.getNumUnits(text, units * unit), ends ? 0U : 1U);
        }
}

TEST_P(ConverterContract, LeavesUtf8ToUtf32Alone) {
    if (GetParam().cs == VYNCS_UTF32)
        return;
    unsigned char dst[8] = {'x'};
    bool illegal = true;
    EXPECT_EQ(converter.toUTF8(dst, "A", 7, ILLCHAR_REPLACE, &illegal), 0UL);
    EXPECT_EQ(converter.fromUTF8(dst, dst, 1, ILLCHAR_REPLACE, &illegal), 0UL);
    EXPECT_EQ(dst[0], 'x');
    EXPECT_TRUE(illegal);
}

INSTANTIATE_TEST_SUITE_P(Sets, ConverterContract, testing::ValuesIn(servedSets),
                         [](auto const& test) { return VynCharSetToString(test.param.cs); });

} // namespace
