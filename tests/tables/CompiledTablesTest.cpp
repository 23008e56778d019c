#include "tables/Tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>
#include <span>
#include <utility>
#include <vector>

namespace {

using Map = std::map<unsigned, unsigned>; // code to Unicode value
using Pair = std::array<unsigned, 2>;     // code, Unicode value
using Range = std::array<unsigned, 3>;    // first, last, value of first

void append(std::vector<unsigned>& numbers, unsigned short number) {
    numbers.push_back(number);
}

void append(std::vector<unsigned>& numbers, sMBCSExTable const& record) {
    numbers.insert(numbers.end(), {record.code, record.unicode});
}

void append(std::vector<unsigned>& numbers, sGB18030Range const& record) {
    numbers.insert(numbers.end(), {record.first, record.last, record.target});
}

/// All records of a table, its terminator included.
template <class Record, class Table>
std::vector<Record> recordsOf(Table const& table) {
    std::vector<unsigned> numbers;
    for (auto const& element : table)
        append(numbers, element);
    std::vector<Record> records(numbers.size() / Record().size());
    for (std::size_t i = 0; i < numbers.size(); ++i)
        records[i / Record().size()][i % Record().size()] = numbers[i];
    return records;
}

Map mapOf(std::vector<Pair> const& records) {
    Map map;
    for (auto const& [code, unicode] : records)
        map[code] = unicode;
    map.erase(0);
    return map;
}

template <class Table>
Map mapOf(Table const& table) {
    return mapOf(recordsOf<Pair>(table));
}

constexpr unsigned absent = 0; // what a Map gives for a code that it does not hold

struct CompiledMap {
    char const* name;
    std::vector<Pair> records;
    std::size_t expectedRecords, expectedSingleBytes;
    Map samples; // what proves each deviation from the published table
};

template <class Table>
CompiledMap row(char const* name, Table const& table, std::size_t records, std::size_t singleBytes, Map samples = {}) {
    return {name, recordsOf<Pair>(table), records, singleBytes, std::move(samples)};
}

std::vector<CompiledMap> allMaps() {
    return {
        row("1250", oCP1250map, 255, 255, {{0x81, 0x81}, {0x83, 0x83}, {0x88, 0x88}, {0x90, 0x90}, {0x98, 0x98}}),
        row("1251", oCP1251map, 255, 255, {{0x98, 0x98}}),
        row("1252", oCP1252map, 255, 255, {{0x80, 0x20AC}, {0x81, 0x81}, {0x99, 0x2122}, {0x9D, 0x9D}}),
        row("1253", oCP1253map, 253, 253, {{0x9F, 0x9F}, {0xAA, 0xAA}, {0xD2, absent}, {0xFF, absent}}),
        row("1254", oCP1254map, 255, 255, {{0x8D, 0x8D}, {0x9E, 0x9E}}),
        row("1255", oCP1255map, 244, 244,
            {{0x8A, 0x8A}, {0xCA, absent}, {0xCB, 0x5BB}, {0xD9, absent}, {0xFF, absent}}),
        row("1256", oCP1256map, 255, 255),
        row("1257", oCP1257map, 253, 253, {{0x9F, 0x9F}, {0xA1, absent}, {0xA5, absent}}),
        row("1258", oCP1258map, 255, 255, {{0x8A, 0x8A}, {0x9E, 0x9E}}),
        row("874", oCP874map, 218, 218, {{0x1A, 0x1C}, {0x1C, 0x7F}, {0x7F, 0x1A}, {0xA0, absent}, {0xFC, 0xA2}}),
        row("8859-1", o8859_1map, 255, 255, {{0x80, 0x80}, {0xFF, 0xFF}}),
        row("8859-2", o8859_2map, 255, 255),
        row("8859-3", o8859_3map, 248, 248),
        row("8859-4", o8859_4map, 255, 255),
        row("8859-5", o8859_5map, 255, 255),
        row("8859-6", o8859_6map, 210, 210),
        row("8859-7", o8859_7map, 252, 252),
        row("8859-8", o8859_8map, 219, 219, {{0xA1, absent}, {0xE0, 0x5D0}}),
        row("8859-9", o8859_9map, 255, 255),
        row("8859-10", o8859_10map, 255, 255),
        row("8859-11", o8859_11map, 247, 247),
        row("8859-13", o8859_13map, 255, 255),
        row("8859-14", o8859_14map, 255, 255),
        row("8859-15", o8859_15map, 255, 255, {{0xA4, 0x20AC}}),
        row("8859-16", o8859_16map, 255, 255),
        row("KOI8-R", oKOI8Rmap, 255, 255),
        row("932", oCP932map, 9338, 193, {{0x1A, 0x1C}, {0x1C, 0x7F}, {0x7F, 0x1A}, {0x80, 0xA2}, {0xA0, 0xA3}}),
        row("932", oCP932map, 9338, 193, {{0xFD, 0xAC}, {0x81CA, absent}, {0x88B1, 0x9C3A}, {0xFA54, 0xFFE2}}),
        row("Shift_JIS", oSHIFTJISmap, 9396, 190, {{0x1A, 0x1C}, {0x7F, 0x1A}, {0x5C, 0x5C}, {0x80, absent}}),
        row("Shift_JIS", oSHIFTJISmap, 9396, 190, {{0x8740, 0x2460}, {0x88B1, 0x9BF5}, {0xFA4A, absent}}),
        row("JIS X 0213", oSJIS0213_2004map, 11398, 190, {{0x5C, 0xA5}, {0x7E, 0x203E}, {0x815F, 0x5C}}),
        row("JIS X 0213", oSJIS0213_2004map, 11398, 190, {{0x8160, 0x301C}, {0x82F5, absent}, {0x87A0, 0x2000B}}),
        row("936", oCP936map, 24069, 129, {{0x80, 0x20AC}, {0xFF, 0xF8F5}, {0x8141, 0x4E04}, {0x8181, 0x4E96}}),
        row("949", oCP949map, 17365, 129, {{0xFF, 0xF8F7}}),
        row("950", oCP950map, 20202, 127, {{0x1A, 0x1C}, {0x7F, 0x1A}, {0x8140, 0xEEB8}, {0xA155, 0xFE31}}),
        row("Big5", oBIG5map, 19839, 129, {{0x1A, 0x1A}, {0xFF, 0xF8F8}, {0xA155, 0xFF5C}, {0xA2CC, absent}}),
        row("GBK", oGBKmap, 24067, 127, {{0x80, absent}, {0xA2E3, 0x20AC}, {0xA8BC, 0xE7C7}, {0xA98A, 0x2FF0}}),
        row("KS X 1001", oKSX1001map, 8224, 0, {{0x2124, 0xB7}, {0x212A, 0x2015}, {0x2266, absent}, {0x2267, absent}}),
        row("GB 2312", oGB2312map, 7445, 0, {{0x2124, 0x30FB}, {0x212A, 0x2015}, {0x3021, 0x554A}}),
        row("JIS X 0208", oJIS0208map, 6879, 0, {{0x2131, 0xFFE3}, {0x2140, 0x5C}, {0x2141, 0x301C}, {0x216F, 0xFFE5}}),
        row("JIS X 0201", oJIS0201map, 189, 189, {{0x5C, 0xA5}, {0x7E, 0x203E}, {0x7F, absent}, {0xDF, 0xFF9F}}),
        row("JIS X 0212", oJIS0212map, 0, 0),
    };
}

TEST(CompiledMaps, AreBijectiveSortedAndTerminatedOnce) {
    for (auto const& [name, records, expectedRecords, expectedSingleBytes, samples] : allMaps()) {
        SCOPED_TRACE(name);
        ASSERT_EQ(records.size(), expectedRecords + 1);
        EXPECT_EQ(records.back(), Pair{});

        auto const entries = std::span(records).first(expectedRecords);
        bool const isCodePage = expectedRecords == expectedSingleBytes && expectedRecords > 189; // not JIS X 0201
        EXPECT_TRUE(std::ranges::is_sorted(entries, {}, [=](Pair const& entry) { return entry[isCodePage ? 1 : 0]; }));
        std::set<unsigned> codes, values;
        for (auto const& [code, unicode] : entries) {
            EXPECT_TRUE(code != 0 && unicode != 0);
            EXPECT_TRUE(codes.insert(code).second && values.insert(unicode).second) << std::hex << "twice: 0x" << code;
        }
        auto const singleBytes = std::distance(codes.begin(), codes.lower_bound(0x100));
        EXPECT_EQ(static_cast<std::size_t>(singleBytes), expectedSingleBytes);
        Map map = mapOf(records);
        for (auto const& [code, unicode] : samples)
            EXPECT_EQ(map[code], unicode) << std::hex << "code 0x" << code;
    }
}

TEST(CompiledMaps, HoldTheStatedNumbersInNamedAreas) {
    Map const cp932 = mapOf(oCP932map), shiftJis = mapOf(oSHIFTJISmap);
    struct Case {
        char const* what;
        Map const& map;
        Pair codes, values; // first and last
        long count;
    };
    Pair const doubleByte{0x100, 0xFFFF}, anyValue{0, 0x10FFFF}, privateUse{0xE000, 0xF8FF},
        beyondBmp{0x10000, 0x10FFFF};
    Case const cases[] = {
        {"932, row 13", cp932, {0x8740, 0x879C}, anyValue, 0},
        {"932, selected extensions", cp932, {0xED40, 0xEEFC}, anyValue, 0},
        {"932, extensions", cp932, {0xFA40, 0xFC4B}, anyValue, 388},
        {"932, user-defined", cp932, {0xF040, 0xF9FC}, privateUse, 1880},
        {"Shift_JIS, row 13", shiftJis, {0x8740, 0x879C}, anyValue, 74},
        {"Shift_JIS, extensions", shiftJis, {0xFA40, 0xFC4B}, anyValue, 373},
        {"JIS X 0213", mapOf(oSJIS0213_2004map), doubleByte, beyondBmp, 303},
        {"950", mapOf(oCP950map), doubleByte, privateUse, 6209},
        {"Big5", mapOf(oBIG5map), doubleByte, privateUse, 6217},
    };
    auto const within = [](unsigned number, Pair const& limits) { return limits[0] <= number && number <= limits[1]; };
    for (auto const& area : cases) {
        auto const counts = [&](auto const& entry) {
            return within(entry.first, area.codes) && within(entry.second, area.values);
        };
        EXPECT_EQ(std::count_if(area.map.begin(), area.map.end(), counts), area.count) << area.what;
    }
}

TEST(CompiledMaps, DifferAsStated) {
    using Counts = std::array<int, 3>; // codes with another value, only left, only right
    auto const compare = [](Map const& left, Map right) {
        Counts found{};
        for (auto const& [code, unicode] : left) {
            bool const isShared = right.count(code) != 0;
            ++found[isShared ? 0 : 1];
            found[0] -= isShared && right[code] == unicode;
            right.erase(code);
        }
        found[2] = static_cast<int>(right.size());
        return found;
    };
    EXPECT_EQ(compare(mapOf(oCP932map), mapOf(oSHIFTJISmap)), (Counts{56, 18, 76}));
    EXPECT_EQ(compare(mapOf(oBIG5map), mapOf(oCP950map)), (Counts{363, 96, 459}));
    EXPECT_EQ(compare(mapOf(oGBKmap), mapOf(oCP936map))[2], 2) << "the single bytes 0x80 and 0xFF";
}

int asciiClass(int byte) {
    if (std::isalpha(byte))
        return std::isupper(byte) ? 0x21 : 0x11;
    return std::isdigit(byte) ? 0x04 : byte == ' ' ? 0x08 : 0x02;
}

// A code whose second byte is no trail byte encodes but does not decode: deliberate in code pages 936 and 950.
TEST(LeadByteTypes, DecodeTheCodesOfTheirMaps) {
    struct Case {
        char const* what;
        Map map;
        unsigned char const* types;
        int leads, trails, undecodable;
    };
    Case const cases[] = {
        {"932", mapOf(oCP932map), oCP932Type, 60, 188, 0},
        {"Shift_JIS", mapOf(oSHIFTJISmap), oCP932Type, 60, 188, 0},
        {"JIS X 0213", mapOf(oSJIS0213_2004map), oCP932Type, 60, 188, 0},
        {"936: 33 second bytes of each lead", mapOf(oCP936map), oCP936Type, 126, 158, 126 * 33},
        {"949", mapOf(oCP949map), oCP949Type, 126, 178, 0},
        {"950: some user-defined codes", mapOf(oCP950map), oCP950Type, 126, 158, 418},
        {"Big5", mapOf(oBIG5map), oBig5Type, 126, 157, 0},
    };
    for (auto const& [what, map, types, leads, trails, undecodable] : cases) {
        SCOPED_TRACE(what);
        std::array<int, 2> found{};
        for (unsigned byte = 0; byte < 256; ++byte) {
            found[0] += (types[byte] & 0x40) != 0;
            found[1] += (types[byte] & 0x80) != 0;
            if (byte >= ' ' && byte < '~') {
                EXPECT_EQ(types[byte] & 0x3F, asciiClass(static_cast<int>(byte))) << std::hex << byte;
            }
        }
        EXPECT_EQ(found, (std::array{leads, trails}));
        int withoutTrail = 0;
        for (auto const& entry : map) {
            unsigned const code = entry.first;
            bool const isDouble = code > 0xFF;
            EXPECT_EQ((types[isDouble ? code >> 8 : code] & 0x40) != 0, isDouble) << std::hex << code;
            withoutTrail += isDouble && (types[code & 0xFF] & 0x80) == 0;
        }
        EXPECT_EQ(withoutTrail, undecodable);
    }
}

TEST(RangeLists, AreSortedDisjointAndTerminatedOnce) {
    struct Case {
        char const* name;
        std::vector<Range> records;
        std::size_t expectedRecords; // with terminator
        unsigned expectedKeys;       // in all ranges, 0: not stated
    };
    Case const cases[] = {
        {"oGB2UniRange", recordsOf<Range>(oGB2UniRange), 266, 0},
        {"oUni2GBRange", recordsOf<Range>(oUni2GBRange), 266, 0},
        {"classTable", recordsOf<Range>(classTable), 1082, 0},
        {"toLowerTable", recordsOf<Range>(toLowerTable), 370, 704},
        {"toUpperTable", recordsOf<Range>(toUpperTable), 376, 673},
    };
    for (auto const& [name, records, expectedRecords, expectedKeys] : cases) {
        SCOPED_TRACE(name);
        ASSERT_EQ(records.size(), expectedRecords);
        EXPECT_EQ(records.back(), Range{});
        unsigned previousLast = 0, keys = 0;
        for (auto record = records.begin(); record != records.end() - 1; ++record) {
            auto const [first, last, value] = *record;
            EXPECT_TRUE(previousLast < first && first <= last && value != 0) << std::hex << first;
            previousLast = last;
            keys += last - first + 1;
        }
        EXPECT_TRUE(expectedKeys == 0 || keys == expectedKeys) << keys;
    }
}

TEST(RangeLists, OfGB18030CompleteTheTwoByteMap) {
    auto const gbk = mapOf(oGBKmap);
    std::set<unsigned> values; // of the map, then of the four-byte keys too
    for (auto const& entry : gbk)
        values.insert(entry.second);

    std::vector<Range> expectedInverse{{0, 0, 0}};
    Map fourByte;
    int twoByteRanges = 0;
    for (auto const& [first, last, target] : recordsOf<Range>(oGB2UniRange)) {
        if (first == 0)
            break;
        expectedInverse.push_back({target, target + last - first, first});
        twoByteRanges += first < 0x10000;
        for (unsigned key = first; key <= last; ++key) {
            unsigned const value = target + key - first;
            EXPECT_TRUE(key < 0x10000 ? gbk.at(key) == value : values.insert(value).second) << std::hex << key;
            if (key >= 0x10000)
                fourByte[key] = value;
        }
    }
    EXPECT_EQ(twoByteRanges, 59);
    EXPECT_EQ(values.size(), 0xFFFFu - 0x800) << "every unit but 0 and the surrogates has one code";
    EXPECT_EQ(values.lower_bound(0xD800), values.lower_bound(0xE000));
    EXPECT_EQ(fourByte.begin()->first, 0x10000u);
    EXPECT_EQ(fourByte.rbegin()->first, 0x10000u + fourByte.size() - 1) << "the four-byte keys have no gap";
    EXPECT_EQ(fourByte[0x199FB], 0xFFFFu);
    EXPECT_EQ(fourByte[0x10000 + 5 * 1260 + (0xF4 - 0x81) * 10 + 7], 0x1E3Fu) << "81 35 F4 37";

    std::sort(expectedInverse.begin(), expectedInverse.end());
    std::rotate(expectedInverse.begin(), expectedInverse.begin() + 1, expectedInverse.end());
    EXPECT_EQ(recordsOf<Range>(oUni2GBRange), expectedInverse);
}

} // namespace
