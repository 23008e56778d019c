#include "tests/support/Reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace {

using Map = std::map<unsigned, unsigned>; // code to Unicode value
using Pair = std::pair<unsigned, unsigned>;
using Range = std::array<unsigned, 3>; // first, last, value of first

// Up to the record of zeros, which is left out.
std::vector<Pair> pairsOf(unsigned short const* map) {
    std::vector<Pair> pairs;
    for (; map[0] != 0 || map[1] != 0; map += 2)
        pairs.emplace_back(map[0], map[1]);
    return pairs;
}

std::vector<Pair> pairsOf(sMBCSExTable const* map) {
    std::vector<Pair> pairs;
    for (; map->code != 0 || map->unicode != 0; ++map)
        pairs.emplace_back(map->code, map->unicode);
    return pairs;
}

template <class Table>
Map mapOf(Table const* table) {
    auto const pairs = pairsOf(table);
    return {pairs.begin(), pairs.end()};
}

// All of a list, which has to end with the only record of zeros.
template <class Element, std::size_t size>
std::vector<Range> rangesOf(Element const (&list)[size]) {
    std::vector<Range> ranges;
    if constexpr (std::is_same_v<Element, sGB18030Range>)
        for (sGB18030Range const& range : list)
            ranges.push_back({range.first, range.last, range.target});
    else
        for (std::size_t i = 0; i < size; i += 3)
            ranges.push_back({list[i], list[i + 1], list[i + 2]});
    EXPECT_EQ(ranges.back(), Range{});
    ranges.pop_back();
    unsigned previousLast = 0;
    for (auto const& [first, last, value] : ranges) {
        EXPECT_LT(previousLast, first) << ranges.size() << " ranges";
        EXPECT_LE(first, last);
        EXPECT_NE(value, 0U) << first;
        previousLast = last;
    }
    return ranges;
}

TEST(CompiledMaps, AreBijectiveAndSorted) {
    auto const check = [](std::vector<Pair> const& pairs, bool byUnit) {
        unsigned last = 0;
        std::set<unsigned> others;
        for (auto const& [code, unicode] : pairs) {
            auto const [key, other] = byUnit ? Pair{unicode, code} : Pair{code, unicode};
            EXPECT_LT(last, key);
            EXPECT_NE(other, 0U) << key;
            EXPECT_TRUE(others.insert(other).second) << std::hex << code;
            last = key;
        }
    };
    for (ReferenceSet const& set : tableSets()) {
        SCOPED_TRACE(VynCharSetToString(set.cs));
        auto const pairs = set.map ? pairsOf(set.map) : pairsOf(oSJIS0213_2004map);
        EXPECT_EQ(pairs.size(), set.codes);
        check(pairs, set.form == Form::SingleByte);
    }
    check(pairsOf(oJIS0201map), false);
    EXPECT_EQ(pairsOf(oJIS0201map).size(), 189U);
    EXPECT_EQ(pairsOf(oJIS0212map).size(), 0U);
}

TEST(CompiledMaps, DeviateFromThePublishedTablesAsStated) {
    struct {
        Map map, samples; // 0: unmapped
    } const rows[] = {
        {mapOf(oCP1252map), {{0x80, 0x20AC}, {0x81, 0x81}}},
        {mapOf(oCP1253map), {{0x9F, 0x9F}, {0xAA, 0xAA}, {0xD2, 0}, {0xFF, 0}}},
        {mapOf(oCP1255map), {{0x8A, 0x8A}, {0xCA, 0}, {0xCB, 0x5BB}, {0xD9, 0}, {0xFF, 0}}},
        {mapOf(oCP1257map), {{0x9F, 0x9F}, {0xA1, 0}, {0xA5, 0}}},
        {mapOf(oCP874map), {{0x1A, 0x1C}, {0x1C, 0x7F}, {0x7F, 0x1A}, {0xA0, 0}, {0xFC, 0xA2}}},
        {mapOf(o8859_8map), {{0xA1, 0}, {0xE0, 0x5D0}}},
        {mapOf(oCP932map), {{0x1A, 0x1C}, {0x1C, 0x7F}, {0x80, 0xA2}, {0xA0, 0xA3}, {0xFD, 0xAC}, {0x81CA, 0}}},
        {mapOf(oCP932map), {{0x88B1, 0x9C3A}, {0xFA54, 0xFFE2}}},
        {mapOf(oSHIFTJISmap), {{0x1A, 0x1C}, {0x5C, 0x5C}, {0x80, 0}, {0x8740, 0x2460}, {0x88B1, 0x9BF5}, {0xFA4A, 0}}},
        {mapOf(oCP936map), {{0x80, 0x20AC}, {0xFF, 0xF8F5}, {0x8141, 0x4E04}, {0x8181, 0x4E96}}},
        {mapOf(oCP949map), {{0xFF, 0xF8F7}}},
        {mapOf(oCP950map), {{0x1A, 0x1C}, {0x7F, 0x1A}, {0x8140, 0xEEB8}, {0xA155, 0xFE31}}},
        {mapOf(oBIG5map), {{0x1A, 0x1A}, {0xFF, 0xF8F8}, {0xA155, 0xFF5C}, {0xA2CC, 0}}},
        {mapOf(oGBKmap), {{0x80, 0}, {0xA2E3, 0x20AC}, {0xA8BC, 0xE7C7}, {0xA98A, 0x2FF0}}},
        {mapOf(oKSX1001map), {{0x2124, 0xB7}, {0x212A, 0x2015}, {0x2266, 0}, {0x2267, 0}}},
        {mapOf(oGB2312map), {{0x2124, 0x30FB}, {0x212A, 0x2015}, {0x3021, 0x554A}}},
        {mapOf(oJIS0208map), {{0x2131, 0xFFE3}, {0x2140, 0x5C}, {0x2141, 0x301C}, {0x216F, 0xFFE5}}},
        {mapOf(oJIS0201map), {{0x5C, 0xA5}, {0x7E, 0x203E}, {0x7F, 0}, {0xDF, 0xFF9F}}},
        {mapOf(oSJIS0213_2004map), {{0x5C, 0xA5}, {0x7E, 0x203E}, {0x815F, 0x5C}, {0x82F5, 0}, {0x87A0, 0x2000B}}},
    };
    for (auto [map, samples] : rows)
        for (auto const& [code, value] : samples)
            EXPECT_EQ(map[code], value) << std::hex << code << " in a map of " << std::dec << map.size();
}

// A code whose second byte is no trail byte encodes but does not decode: deliberate in code pages 936 and 950.
TEST(LeadByteTypes, DecodeTheCodesOfTheirMaps) {
    std::map<VynCharSet, std::array<int, 4>> const expected = {
        // lead, trail and single bytes, undecodable codes
        {VYNCS_WCP932, {60, 188, 193, 0}},   {VYNCS_SHIFTJIS, {60, 188, 190, 0}},
        {VYNCS_SJIS0213, {60, 188, 190, 0}}, {VYNCS_WCP936, {126, 158, 129, 126 * 33}},
        {VYNCS_WCP949, {126, 178, 129, 0}},  {VYNCS_WCP950, {126, 158, 127, 418}},
        {VYNCS_BIG5, {126, 157, 129, 0}}};
    for (ReferenceSet const& set : multibyteSets) {
        if (!set.types)
            continue;
        SCOPED_TRACE(VynCharSetToString(set.cs));
        std::array<int, 4> found{};
        for (int byte = 0; byte < 256; ++byte) {
            found[0] += (set.types[byte] & 0x40) != 0;
            found[1] += (set.types[byte] & 0x80) != 0;
        }
        for (int byte = ' '; byte < '~'; ++byte) {
            int const letterOrSign = std::isupper(byte) ? 0x21 : std::islower(byte) ? 0x11 : 0x02;
            int const characterClass = std::isdigit(byte) ? 0x04 : byte == ' ' ? 0x08 : letterOrSign;
            EXPECT_EQ(set.types[byte] & 0x3F, characterClass) << byte;
        }
        for (auto const& [code, unicode] : set.map ? mapOf(set.map) : mapOf(oSJIS0213_2004map)) {
            bool const isDouble = code > 0xFF;
            EXPECT_EQ((set.types[isDouble ? code >> 8 : code] & 0x40) != 0, isDouble) << std::hex << code;
            found[2] += !isDouble;
            found[3] += isDouble && (set.types[code & 0xFF] & 0x80) == 0;
        }
        EXPECT_EQ(found, expected.at(set.cs));
    }
}

TEST(RangeLists, OfCharacterPropertiesAreSortedAndDisjoint) {
    EXPECT_EQ(rangesOf(classTable).size(), 1081U);
    EXPECT_EQ(rangesOf(toLowerTable).size(), 369U);
    EXPECT_EQ(rangesOf(toUpperTable).size(), 375U);
}

TEST(RangeLists, OfGB18030CompleteTheTwoByteMap) {
    auto const ranges = rangesOf(oGB2UniRange);
    ASSERT_EQ(ranges.size(), 265U);
    EXPECT_EQ(ranges[59][0], 0x10000U) << "after the two-byte ranges";
    Map const gbk = mapOf(oGBKmap);
    std::map<unsigned, int> uses; // of each value: by the map, and by a range of four-byte keys
    for (auto const& entry : gbk)
        ++uses[entry.second];
    std::vector<Range> inverse;
    for (auto const& [first, last, target] : ranges) {
        inverse.push_back({target, target + last - first, first});
        for (unsigned key = first; key <= last; ++key)
            if (key < 0x10000)
                EXPECT_EQ(gbk.at(key), target + key - first);
            else
                ++uses[target + key - first];
    }
    for (unsigned unit = 1; unit < 0x10000; ++unit)
        EXPECT_EQ(uses[unit], unit < 0xD800 || unit > 0xDFFF ? 1 : 0) << std::hex << unit;
    std::sort(inverse.begin(), inverse.end());
    EXPECT_EQ(rangesOf(oUni2GBRange), inverse);
}

} // namespace
