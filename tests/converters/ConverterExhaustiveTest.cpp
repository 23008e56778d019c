// Every short sequence and every unit of the table sets against the reference.

#include "tests/support/Reference.h"

#include <algorithm>
#include <initializer_list>

namespace {

using testing::PrintToString;

constexpr unsigned long ample = 32;

class ConverterExhaustive : public testing::TestWithParam<ReferenceSet> {
protected:
    void expectDecodes(Bytes const& bytes) {
        for (ILLCHAR_OPTYPE const op : policies)
            ASSERT_EQ(kit.decode(bytes, ample, {.op = op}), reference.decode(bytes, ample, {.op = op}))
                << PrintToString(bytes);
        Call const limited{.maxSrc = 1};
        ASSERT_EQ(kit.decode(bytes, ample, limited), reference.decode(bytes, ample, limited)) << PrintToString(bytes);
        ASSERT_EQ(kit.countUnits(bytes), reference.countUnits(bytes)) << PrintToString(bytes);
    }

    /// Decodes a sequence at the end of the text and with a character after it.
    void expectDecodesInText(std::initializer_list<unsigned> sequence) {
        Bytes bytes;
        for (unsigned const byte : sequence)
            bytes.push_back(static_cast<unsigned char>(byte));
        expectDecodes(bytes);
        bytes.push_back('A');
        expectDecodes(bytes);
    }

    void expectEncodes(Units const& units) {
        for (ILLCHAR_OPTYPE const op : policies)
            ASSERT_EQ(kit.encode(units, ample, {.op = op}), reference.encode(units, ample, {.op = op}))
                << PrintToString(units);
        ASSERT_EQ(kit.countBytes(units), reference.countBytes(units)) << PrintToString(units);
    }

    ConvertKit kit{*VynCharSetConverter::getConverter(GetParam().cs)};
    Reference reference{GetParam()};
};

TEST_P(ConverterExhaustive, DecodesSequences) {
    for (unsigned lead = 1; lead < 0x100 && !HasFailure(); ++lead) {
        expectDecodesInText({lead});
        for (unsigned trail = 1; trail < 0x100; ++trail)
            expectDecodesInText({lead, trail});
    }
    if (GetParam().form == Form::SingleByte)
        return;
    constexpr unsigned char classes[] = {0x01, 0x2F, 0x30, 0x39, 0x3A, 0x40, 0x7E, 0x7F,
                                         0x80, 0x81, 0x8F, 0xA1, 0xDF, 0xE0, 0xFE, 0xFF};
    for (unsigned const lead : Units{0x41, 0x80, 0x81, 0x84, 0x8E, 0x8F, 0x90, 0xA4, 0xE4, 0xFE, 0xFF})
        for (unsigned const second : classes)
            for (unsigned const third : classes) {
                expectDecodesInText({lead, second, third});
                for (unsigned const fourth : classes)
                    expectDecodesInText({lead, second, third, fourth});
            }
}

TEST_P(ConverterExhaustive, EncodesUnitsAndSurrogatePairs) {
    for (unsigned unit = 1; unit < 0x10000 && !HasFailure(); ++unit)
        expectEncodes({static_cast<unsigned short>(unit)});
    unsigned const step = GetParam().form == Form::DoubleByteEx ? 1 : 0x3FF;
    for (unsigned scalar = 0x10000; scalar < 0x110000 && !HasFailure(); scalar += scalar < 0x30000 ? step : 0x3FF)
        expectEncodes({static_cast<unsigned short>((scalar >> 10) + 0xD7C0),
                       static_cast<unsigned short>(0xDC00 + scalar % 0x400)});
    for (unsigned short const first : Units{0xD800, 0xDBFF, 0xDC00, 0xDFFF, 'A'})
        for (unsigned short const second : Units{0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xD7FF, 0xE000, 'A'})
            for (Units const& units : {Units{first, second}, {first, second, 'A'}, {first, second, 0xDC00}})
                expectEncodes(units);
}

INSTANTIATE_TEST_SUITE_P(Sets, ConverterExhaustive, testing::ValuesIn(tableSets()),
                         [](auto const& test) { return VynCharSetToString(test.param.cs); });

TEST(ConverterExhaustiveGb18030, DecodesFourBytes) {
    ConvertKit kit(*VynCharSetConverter::getConverter(VYNCS_GB18030));
    Reference reference(*std::ranges::find(multibyteSets, VYNCS_GB18030, &ReferenceSet::cs));
    // All of the Basic Multilingual Plane, then steps that meet U+10000 and U+10FFFF.
    for (unsigned index = 0; index < 126 * 12600; index += index < 40000 ? 1 : 25) {
        Bytes bytes;
        for (unsigned shift = 32; shift != 0; shift -= 8)
            bytes.push_back(static_cast<unsigned char>(Reference::fourBytes(index) >> (shift - 8)));
        for (int const maxSrc : {-1, 1})
            ASSERT_EQ(kit.decode(bytes, ample, {.maxSrc = maxSrc}), reference.decode(bytes, ample, {.maxSrc = maxSrc}));
    }
}

} // namespace
