#include "tests/support/TableReference.h"

#include <climits>
#include <initializer_list>
#include <sstream>
#include <string>

namespace {

constexpr unsigned long ample = 32;

class TableConverter : public testing::TestWithParam<TableSet> {
protected:
    /// Decodes `bytes` with every policy and up to a source limit of 1, and counts their units.
    void expectDecodes(Bytes const& bytes) {
        for (ILLCHAR_OPTYPE const op : policies)
            ASSERT_EQ(kit.decode(bytes, ample, {.op = op}), reference.decode(bytes, ample, {.op = op})) << text(bytes);
        ASSERT_EQ(kit.decode(bytes, ample, {.maxSrc = 1}), reference.decode(bytes, ample, {.maxSrc = 1}))
            << text(bytes);
        ASSERT_EQ(kit.countUnits(bytes), reference.countUnits(bytes)) << text(bytes);
    }

    /// Decodes a sequence at the end of the text and with a character behind it.
    void expectDecodesInText(std::initializer_list<unsigned char> sequence) {
        unsigned char bytes[8] = {};
        std::copy(sequence.begin(), sequence.end(), bytes);
        auto const first = reference.decodeOne(bytes);
        characters += first.value != 0 && first.bytes == sequence.size();
        m_sequence.assign(sequence.begin(), sequence.end());
        expectDecodes(m_sequence);
        m_sequence.push_back('A');
        expectDecodes(m_sequence);
    }

    /// Codes whose second byte is no trail byte by the type table: they encode, but what they encode to can't be
    /// decoded.
    unsigned encodedOnly() const {
        unsigned count = 0;
        if (GetParam().cs == VYNCS_WCP936 || GetParam().cs == VYNCS_WCP950)
            for (unsigned short const* record = GetParam().map; record[0] != 0; record += 2)
                count += record[0] > 0xFF && (record[0] & 0xFF) >= 0x80 && (record[0] & 0xFF) <= 0xA0;
        return count;
    }

    /// Encodes a text with every policy and counts its bytes.
    void expectEncodes(Units const& units) {
        for (ILLCHAR_OPTYPE const op : policies)
            ASSERT_EQ(kit.encode(units, ample, {.op = op}), reference.encode(units, ample, op)) << text(units);
        unsigned long const needed = reference.encode(units, ample, ILLCHAR_REPLACE).output.size();
        // The "?" of a high surrogate at the end of the text is not counted where pairs are looked for.
        bool const uncounted = GetParam().form == Form::DoubleByteEx && (units.back() & 0xFC00) == 0xD800;
        ASSERT_EQ(kit.countBytes(units), needed - (uncounted ? 1 : 0)) << text(units);
    }

    template <class Element>
    static std::string text(std::vector<Element> const& elements) {
        return (std::ostringstream() << Converted<Element>{elements, false}).str();
    }

    ConvertKit kit{*VynCharSetConverter::getConverter(GetParam().cs)};
    TableReference reference{GetParam()};
    unsigned long characters = 0; ///< How many of the compared sequences were one character that converts.

private:
    Bytes m_sequence;
};

constexpr unsigned char byteOf(unsigned value) {
    return static_cast<unsigned char>(value);
}

Units unitsOf(unsigned scalar) {
    if (scalar < 0x10000)
        return {static_cast<unsigned short>(scalar)};
    return {static_cast<unsigned short>((scalar >> 10) + 0xD7C0), static_cast<unsigned short>(0xDC00 + scalar % 0x400)};
}

TEST_P(TableConverter, DecodesEverySequenceOfOneOrTwoBytes) {
    for (unsigned code = 1; code < 0x10000 && !HasFailure(); ++code)
        if (code < 0x100)
            expectDecodesInText({byteOf(code)});
        else if ((code & 0xFF) != 0)
            expectDecodesInText({byteOf(code >> 8), byteOf(code)});
    RecordProperty("characters", static_cast<int>(characters));
    // Each character has one sequence, but EUC-JP a second form for each one of JIS X 0208, whose second byte counts by
    // its low seven bits, and GB18030 longer sequences.
    if (GetParam().form == Form::EucJp)
        EXPECT_GE(characters, GetParam().characters + 6879);
    else if (GetParam().form == Form::GB18030)
        EXPECT_GE(characters, 24067UL);
    else
        EXPECT_EQ(characters, GetParam().characters - encodedOnly());
}

TEST_P(TableConverter, EncodesEveryUnitAndSurrogatePair) {
    Units units{0};
    for (unsigned unit = 1; unit < 0x10000 && !HasFailure(); ++unit) {
        units[0] = static_cast<unsigned short>(unit);
        expectEncodes(units);
        characters += !kit.encode(units, ample).illegal && kit.countBytes(units) != 0;
    }
    if (GetParam().form == Form::DoubleByteEx)
        for (sMBCSExTable const* record = oSJIS0213_2004map; record->code != 0 && !HasFailure(); ++record)
            if (record->unicode > 0xFFFF) {
                expectEncodes(unitsOf(record->unicode));
                characters += !kit.encode(unitsOf(record->unicode), ample).illegal;
            }
    EXPECT_EQ(characters, GetParam().characters);

    for (unsigned scalar = 0x10000; scalar < 0x110000 && !HasFailure(); scalar += 0x3FF)
        expectEncodes(unitsOf(scalar));
    for (unsigned const first : {0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0x41U})
        for (unsigned const second : {0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0xD7FFU, 0xE000U, 0x41U})
            for (Units rest : {Units{}, Units{'A'}, Units{0xDC00}}) {
                rest.insert(rest.begin(), {static_cast<unsigned short>(first), static_cast<unsigned short>(second)});
                expectEncodes(rest);
            }
}

TEST_P(TableConverter, RoundTripsItsRepertoireInOneText) {
    Units repertoire;
    unsigned long lost = 0;
    for (unsigned scalar = 1; scalar < 0x110000; scalar += scalar < 0x30000 ? 1 : 0x101) {
        Units units = unitsOf(scalar);
        units.push_back(0);
        auto const code = reference.encodeOne(units.data());
        unsigned char bytes[8] = {};
        TableReference::bytesOf(code.bytes, bytes);
        if (code.bytes == 0)
            continue;
        if (reference.decodeOne(bytes).value == scalar)
            repertoire.insert(repertoire.end(), units.begin(), units.end() - 1);
        else
            ++lost;
    }
    EXPECT_EQ(lost, encodedOnly());
    RecordProperty("units", static_cast<int>(repertoire.size()));

    unsigned long const size = kit.countBytes(repertoire);
    Bytes const encoded = kit.encode(repertoire, size).output;
    ASSERT_EQ(encoded.size(), size);
    EXPECT_FALSE(kit.encode(repertoire, size).illegal);
    Converted<unsigned short> const expected{repertoire, false};
    for (int const maxSrc : {-1, INT_MAX})
        for (bool const terminated : {true, false}) // the room is met first: the end of the source is not looked at
            EXPECT_TRUE(kit.decode(encoded, repertoire.size(), {.maxSrc = maxSrc, .terminated = terminated}) ==
                        expected);
    EXPECT_TRUE(kit.encode(repertoire, size, {.terminated = false}).output == encoded);
}

INSTANTIATE_TEST_SUITE_P(Sets, TableConverter, testing::ValuesIn(tableSets()),
                         [](auto const& test) { return std::to_string(test.param.cs); });

class MultibyteTableConverter : public TableConverter {};

TEST_P(MultibyteTableConverter, DecodesEachClassOfBytesInThreeAndFour) {
    constexpr unsigned char classes[] = {0x01, 0x21, 0x2F, 0x30, 0x39, 0x3A, 0x40, 0x7E,
                                         0x7F, 0x80, 0x81, 0x8F, 0xA1, 0xDF, 0xFE, 0xFF};
    for (unsigned char const lead : Bytes{'A', 0x80, 0x81, 0x84, 0x8E, 0x8F, 0x90, 0xA4, 0xE4, 0xFE, 0xFF})
        for (unsigned char const second : classes)
            for (unsigned char const third : classes) {
                expectDecodesInText({lead, second, third});
                for (unsigned char const fourth : classes)
                    expectDecodesInText({lead, second, third, fourth});
            }
}

INSTANTIATE_TEST_SUITE_P(Sets, MultibyteTableConverter, testing::ValuesIn(multibyteSets),
                         [](auto const& test) { return std::to_string(test.param.cs); });

class Gb18030TableConverter : public TableConverter {
protected:
    void expectDecodesPosition(unsigned index) {
        unsigned const code = TableReference::fourBytes(index);
        expectDecodesInText({byteOf(code >> 24), byteOf(code >> 16), byteOf(code >> 8), byteOf(code)});
    }
};

TEST_P(Gb18030TableConverter, DecodesEveryPosition) {
    constexpr unsigned supplementary = TableReference::supplementaryIndex;
    constexpr unsigned last = 126 * 12600 - 1; // FE 39 FE 39
    constexpr unsigned lastUnit = 39419;       // U+FFFF; nothing is mapped behind it up to the supplementary planes
    for (unsigned index = 0; index < supplementary && !HasFailure(); index += index <= lastUnit ? 1 : 29)
        expectDecodesPosition(index);
    EXPECT_EQ(characters, lastUnit + 1);

    characters = 0;
    for (unsigned plane = 0; plane <= 16; ++plane)
        for (unsigned const inPlane : {0U, 1U, 0x3FFU, 0x400U, 0xFFFEU, 0xFFFFU})
            expectDecodesPosition(supplementary + plane * 0x10000 + inPlane);
    expectDecodesPosition(last);
    EXPECT_EQ(characters, 16UL * 6) << "none beyond U+10FFFF";
    expectDecodesInText({0x90, 0x30, 0x81, 0x30});
    expectDecodesInText({0xE3, 0x32, 0x9A, 0x35});
    EXPECT_EQ(characters, 16UL * 6 + 2);
}

INSTANTIATE_TEST_SUITE_P(Sets, Gb18030TableConverter, testing::Values(gb18030Set),
                         [](auto const& test) { return std::to_string(test.param.cs); });

} // namespace
