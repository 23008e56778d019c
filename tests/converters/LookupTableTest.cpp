#include "tests/support/FailingAllocation.h"
#include "tests/support/TableReference.h"

#include <vynulib/LookupTable.h>
#include <vynulib/LookupTableEx.h>
#include <vynulib/VynCharSetConverterDBCS.h>
#include <vynulib/VynCharSetConverterDBCSEx.h>
#include <vynulib/VynCharSetConverterEUC_CN_KR.h>
#include <vynulib/VynCharSetConverterEUC_JP.h>
#include <vynulib/VynCharSetConverterGB18030.h>
#include <vynulib/VynCharSetConverterSBCS.h>

#include <functional>
#include <iterator>
#include <latch>
#include <memory>
#include <thread>

namespace {

template <class Table>
class SparseTable : public testing::Test {
protected:
    bool nullPageIsEmpty() const {
        return std::all_of(std::begin(Table::m_gNullTable), std::end(Table::m_gNullTable),
                           [](auto value) { return value == 0; });
    }
};

using Tables = testing::Types<LookupTable<unsigned char>, LookupTable<unsigned short>, LookupTable<unsigned int>,
                              LookupTableEx<unsigned short>>;
TYPED_TEST_SUITE(SparseTable, Tables);

TYPED_TEST(SparseTable, HoldsWhatWasStoredLastAndZeroElsewhere) {
    TypeParam table, other;
    for (unsigned key = 0; key <= 0xFFFF; ++key)
        ASSERT_EQ(table.lookup(static_cast<unsigned short>(key)), 0U);
    for (unsigned short const key : Units{0x0000, 0x00FF, 0x4E00, 0x4E01, 0xFFFF}) {
        table.insert(key, 7);
        table.insert(key, 0xFE);
        EXPECT_EQ(table.lookup(key), 0xFEU);
        EXPECT_EQ(other.lookup(key), 0U) << "a page is its table's own";
    }
    EXPECT_EQ(table.lookup(0x4E02), 0U);
    EXPECT_EQ(table.lookup(0x5000), 0U);
    EXPECT_TRUE(this->nullPageIsEmpty());
}

TEST(LookupTableEx, SeparatesPlanesAndHoldsNothingBeyondThem) {
    LookupTableEx<unsigned short> table;
    for (unsigned plane = 0; plane <= 16; ++plane)
        table.insert(plane * 0x10000 + 0x4E00, static_cast<unsigned short>(plane + 1));
    for (unsigned plane = 0; plane <= 16; ++plane)
        EXPECT_EQ(table.lookup(plane * 0x10000 + 0x4E00), plane + 1);
    for (unsigned const key : {0x110000U, 0x114E00U, 0xFFFFFFFFU}) {
        table.insert(key, 9);
        EXPECT_EQ(table.lookup(key), 0U);
    }
}

using Converters = std::vector<std::unique_ptr<VynCharSetConverter>>;

/// One converter of each class that takes codes of one byte from its map. The maps outlive them.
Converters convertersOf(unsigned short const* map, sMBCSExTable const* extendedMap) {
    Converters converters;
    converters.push_back(std::make_unique<VynCharSetConverterSBCS>(map, VYNCS_WCP1252));
    converters.push_back(std::make_unique<VynCharSetConverterDBCS>(map, oCP936Type, VYNCS_WCP936));
    converters.push_back(std::make_unique<VynCharSetConverterDBCSEx>(extendedMap, oCP936Type, VYNCS_SJIS0213));
    converters.push_back(std::make_unique<VynCharSetConverterGB18030>(map, VYNCS_GB18030));
    return converters;
}

TEST(ConverterTables, LetTheLaterRecordWinInItsDirection) {
    constexpr unsigned short map[] = {0x41, 0x61, 0x41, 0x62, 0x43, 0x62, 0, 0};
    constexpr sMBCSExTable extendedMap[] = {{0x41, 0x61}, {0x41, 0x62}, {0x43, 0x62}, {0, 0}};
    for (auto const& converter : convertersOf(map, extendedMap)) {
        ConvertKit kit(*converter);
        EXPECT_EQ(kit.decode({0x41, 0x43}, 8).output, (Units{0x62, 0x62}));
        EXPECT_EQ(kit.encode({0x61, 0x62}, 8).output, (Bytes{0x41, 0x43}));
    }
}

TEST(ConverterTables, LetJisX0201WinOver0208AndHold0212Apart) {
    constexpr unsigned short jis0208[] = {0x2131, 0x203E, 0x2132, 0x203F, 0, 0};
    constexpr unsigned short jis0201[] = {0x7E, 0x203E, 0, 0};
    constexpr unsigned short jis0212[] = {0x2131, 0x2040, 0, 0};
    VynCharSetConverterEUC_JP converter(jis0208, jis0201, jis0212, VYNCS_EUC_JP);
    ConvertKit kit(converter);
    EXPECT_EQ(kit.encode({0x203E, 0x203F, 0x2040}, 8).output, (Bytes{0x80, 0xFE, 0xA1, 0xB2, 0x8F, 0xA1, 0xB1}));
    EXPECT_EQ(kit.decode({0xA1, 0xB1, 0x80, 0xFE, 0x8F, 0xA1, 0xB1, 0x8F, 0x21, 0x31, 0x8F, 0xA1}, 8).output,
              (Units{0x203E, 0x203E, 0x2040, 0x2040, 0xFFFD, 0xFFFD}));
    EXPECT_EQ(kit.countUnits({0x8F, 0xA1, 0xB1, 'A', 0x8F, 0xA1}), 2UL);
    EXPECT_EQ(kit.countBytes({0x203E, 0x2040, 0x2041}), 6UL);
}

TEST(ConverterTables, MapNothingWhereTheMapHoldsItsTerminatorOnly) {
    constexpr unsigned short map[] = {0, 0};
    constexpr sMBCSExTable extendedMap[] = {{0, 0}};
    Converters converters = convertersOf(map, extendedMap);
    converters.push_back(std::make_unique<VynCharSetConverterEUC_CN_KR>(map, VYNCS_EUC_KR));
    converters.push_back(std::make_unique<VynCharSetConverterEUC_JP>(map, map, map, VYNCS_EUC_JP));
    for (auto const& converter : converters) {
        ConvertKit kit(*converter);
        EXPECT_EQ(kit.decode({0x7F, 0xFF}, 8), (Converted<unsigned short>{{0xFFFD, 0xFFFD}, true}));
        EXPECT_EQ(kit.encode({0x7F}, 8), (Converted<unsigned char>{{'?'}, true}));
    }
}

TEST(ConverterTables, ConvertNothingWithoutAMap) {
    Converters converters;
    converters.push_back(std::make_unique<VynCharSetConverterSBCS>("map", VYNCS_WCP1252));
    converters.push_back(std::make_unique<VynCharSetConverterEUC_CN_KR>("map", VYNCS_EUC_KR));
    converters.push_back(std::make_unique<VynCharSetConverterEUC_JP>("one", "two", "three", VYNCS_EUC_JP));
    converters.push_back(std::make_unique<VynCharSetConverterGB18030>("map", VYNCS_GB18030));
    for (auto const& converter : converters) {
        ConvertKit kit(*converter);
        EXPECT_EQ(kit.decode({'A', 0xFF}, 8), Converted<unsigned short>());
        EXPECT_EQ(kit.encode({'A', 0x4E00}, 8), Converted<unsigned char>());
        // Single bytes are counted without tables, and so is the form of EUC-CN and EUC-KR.
        bool const countsByForm = converter == converters[0] || converter == converters[1];
        EXPECT_EQ(kit.countUnits({'A', 0xFF}), countsByForm ? 2UL : 0UL);
        EXPECT_EQ(kit.countBytes({'A', 0x4E00}), converter == converters[0] ? 2UL : 0UL);
    }
}

TEST(ConverterTables, DecodeAValueBeyondUnicodeAsOneUnitAndNeverEncodeIt) {
    constexpr sMBCSExTable map[] = {{0x41, 0x110041}, {0x42, 0x10FFFF}, {0, 0}};
    VynCharSetConverterDBCSEx converter(map, oCP936Type, VYNCS_SJIS0213);
    ConvertKit kit(converter);
    EXPECT_EQ(kit.decode({0x41, 0x42}, 8), (Converted<unsigned short>{{0x41, 0xDBFF, 0xDFFF}, false}));
    EXPECT_EQ(kit.encode({0x41, 0xDBFF, 0xDFFF}, 8), (Converted<unsigned char>{{'?', 0x42}, true}));
    EXPECT_EQ(kit.countUnits({0x41, 0x42}), 2UL); // a single byte counts one, whatever its value
}

TEST(ConverterTables, KeepToTheRoomWhereOneByteIsAPair) {
    constexpr sMBCSExTable map[] = {{0x41, 0x20000}, {0x42, 0x42}, {0, 0}};
    constexpr unsigned char noLeads[256] = {};
    VynCharSetConverterDBCSEx converter(map, noLeads, VYNCS_SJIS0213);
    ConvertKit kit(converter);
    for (unsigned long const characters : {1UL, 12UL, 100UL})
        for (unsigned long room = 0; room <= 2 * characters + 2; ++room) {
            Units expected;
            for (unsigned long pair = 0; pair < std::min(room / 2, characters); ++pair)
                expected.insert(expected.end(), {0xD840, 0xDC00});
            EXPECT_EQ(kit.decode(Bytes(characters, 0x41), room).output, expected);
        }
}

TEST(ConverterTables, AreNotBuiltForNothing) {
    constexpr unsigned short map[] = {0x41, 0x61, 0, 0};
    constexpr sMBCSExTable extendedMap[] = {{0x41, 0x61}, {0, 0}};
    Converters converters = convertersOf(map, extendedMap);
    converters.push_back(std::make_unique<VynCharSetConverterEUC_CN_KR>(map, VYNCS_EUC_KR));
    converters.push_back(std::make_unique<VynCharSetConverterEUC_JP>(map, map, map, VYNCS_EUC_JP));
    unsigned short units[2] = {};
    char bytes[2] = {};
    for (auto const& converter : converters) {
        allocationsLeft = 0;
        EXPECT_NO_THROW(converter->toUTF16(nullptr, "A", 1, ILLCHAR_REPLACE, nullptr, -1));
        EXPECT_NO_THROW(converter->toUTF16(units, nullptr, 1, ILLCHAR_REPLACE, nullptr, -1));
        EXPECT_NO_THROW(converter->fromUTF16(nullptr, units, 1, ILLCHAR_REPLACE, nullptr));
        EXPECT_NO_THROW(converter->fromUTF16(bytes, nullptr, 1, ILLCHAR_REPLACE, nullptr));
        EXPECT_NO_THROW(converter->getNumUnits(nullptr, 1));
        EXPECT_NO_THROW(converter->getNumUnits("A", 0));
        EXPECT_NO_THROW(converter->getNumBytes(nullptr, 1));
        EXPECT_NO_THROW(converter->getNumBytes(units, 0));
        EXPECT_THROW(converter->fromUTF16(bytes, units, 1, ILLCHAR_REPLACE, nullptr), std::bad_alloc);
        allocationsLeft = unlimitedAllocations;
        EXPECT_EQ(converter->getNumBytes(units, 1), 0UL) << "and are built when memory is there again";
    }
}

TEST(ConverterTablesThread, AreCompleteForEveryThreadAtTheFirstUse) {
    using Maker = std::function<std::unique_ptr<VynCharSetConverter>()>;
    constexpr int threadCount = 8, rounds = 10;
    Maker const makers[] = {
        [] { return std::make_unique<VynCharSetConverterSBCS>(oCP1251map, VYNCS_WCP1251); },
        [] { return std::make_unique<VynCharSetConverterDBCS>(oCP932map, oCP932Type, VYNCS_WCP932); },
        [] { return std::make_unique<VynCharSetConverterDBCSEx>(oSJIS0213_2004map, oCP932Type, VYNCS_SJIS0213); },
        [] { return std::make_unique<VynCharSetConverterEUC_CN_KR>(oKSX1001map, VYNCS_EUC_KR); },
        [] { return std::make_unique<VynCharSetConverterEUC_JP>(oJIS0208map, oJIS0201map, oJIS0212map, VYNCS_EUC_JP); },
        [] { return std::make_unique<VynCharSetConverterGB18030>(oGBKmap, VYNCS_GB18030); },
    };
    Units const text{'A', 0x0416, 0x3042, 0xFF71, 0xAC00, 0x00A5, 0x203E, 0x20AC, 0x0080};
    for (Maker const& make : makers) {
        auto const settled = make();
        ConvertKit settledKit(*settled);
        auto const encoded = settledKit.encode(text, 64);
        auto const decoded = settledKit.decode(encoded.output, 64);
        for (int round = 0; round < rounds; ++round) {
            auto const fresh = make();
            std::latch start(threadCount);
            std::vector<std::thread> threads;
            for (int i = 0; i < threadCount; ++i)
                threads.emplace_back([&, i] {
                    ConvertKit kit(*fresh);
                    start.arrive_and_wait();
                    if (i % 2 == 0) // either direction may be the first
                        EXPECT_EQ(kit.decode(encoded.output, 64), decoded);
                    else
                        EXPECT_EQ(kit.encode(text, 64), encoded);
                });
            for (std::thread& thread : threads)
                thread.join();
        }
    }
}

} // namespace
