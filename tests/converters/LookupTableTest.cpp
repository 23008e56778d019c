#include "tests/support/FailingAllocation.h"
#include "tests/support/Reference.h"

#include <vynulib/LookupTable.h>
#include <vynulib/LookupTableEx.h>
#include <vynulib/VynCharSetConverterDBCS.h>
#include <vynulib/VynCharSetConverterDBCSEx.h>
#include <vynulib/VynCharSetConverterEUC_CN_KR.h>
#include <vynulib/VynCharSetConverterEUC_JP.h>
#include <vynulib/VynCharSetConverterGB18030.h>
#include <vynulib/VynCharSetConverterSBCS.h>

#include <barrier>
#include <iterator>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

namespace {

template <class Table>
class SparseTable : public testing::Test {};

using Tables = testing::Types<LookupTable<unsigned char>, LookupTable<unsigned short>, LookupTable<unsigned int>,
                              LookupTableEx<unsigned short>>;
TYPED_TEST_SUITE(SparseTable, Tables);

TYPED_TEST(SparseTable, HoldsWhatWasStoredLastAndZeroElsewhere) {
    TypeParam table, other;
    Units const keys{0x0000, 0x00FF, 0x4E00, 0x4E01, 0xFFFF};
    for (unsigned short const key : keys) {
        table.insert(key, 7);
        table.insert(key, 0xFE);
    }
    for (unsigned key = 0; key <= 0xFFFF; ++key) {
        bool const stored = std::ranges::find(keys, key) != keys.end();
        ASSERT_EQ(table.lookup(static_cast<unsigned short>(key)), stored ? 0xFEU : 0U);
        ASSERT_EQ(other.lookup(static_cast<unsigned short>(key)), 0U) << "a page is its table's own";
    }
    EXPECT_EQ(std::ranges::count(TypeParam::m_gNullTable, 0), 256);
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

/// One converter of each class with tables. The maps outlive them.
Converters convertersOf(unsigned short const* map, sMBCSExTable const* extendedMap) {
    Converters converters;
    converters.push_back(std::make_unique<VynCharSetConverterSBCS>(map, VYNCS_WCP1252));
    converters.push_back(std::make_unique<VynCharSetConverterDBCS>(map, oCP936Type, VYNCS_WCP936));
    converters.push_back(std::make_unique<VynCharSetConverterDBCSEx>(extendedMap, oCP936Type, VYNCS_SJIS0213));
    converters.push_back(std::make_unique<VynCharSetConverterGB18030>(map, VYNCS_GB18030));
    converters.push_back(std::make_unique<VynCharSetConverterEUC_CN_KR>(map, VYNCS_EUC_KR));
    converters.push_back(std::make_unique<VynCharSetConverterEUC_JP>(map, map, map, VYNCS_EUC_JP));
    return converters;
}

void expectConversions(Converters const& converters, Bytes const& bytes, Converted<unsigned short> const& decoded,
                       Units const& units, Converted<unsigned char> const& encoded) {
    for (auto const& converter : converters) {
        ConvertKit kit(*converter);
        EXPECT_EQ(kit.decode(bytes, 40), decoded);
        EXPECT_EQ(kit.encode(units, 40), encoded);
    }
}

TEST(ConverterTables, LetTheLaterRecordWinInItsDirection) {
    // Records with one zero do not end a map.
    constexpr unsigned short map[] = {0x41, 0x61, 0, 0x99, 0x41, 0x62, 0x98, 0, 0x43, 0x62, 0, 0};
    constexpr sMBCSExTable extendedMap[] = {{0x41, 0x61}, {0, 0x99}, {0x41, 0x62}, {0x98, 0}, {0x43, 0x62}, {0, 0}};
    Converters converters = convertersOf(map, extendedMap);
    converters.resize(4); // the EUC sets have codes of two bytes only
    expectConversions(converters, {0x41, 0x43}, {{0x62, 0x62}}, {0x61, 0x62}, {{0x41, 0x43}});
    // A map without ASCII of its own has no runs of it.
    expectConversions(converters, Bytes(40, 0x41), {Units(40, 0x62)}, Units(40, 0x61), {Bytes(40, 0x41)});
}

TEST(ConverterTables, MapNothingWhereTheMapHoldsItsTerminatorOnly) {
    constexpr unsigned short map[] = {0, 0};
    constexpr sMBCSExTable extendedMap[] = {{0, 0}};
    expectConversions(convertersOf(map, extendedMap), {0x7F, 0xFF}, {{0xFFFD, 0xFFFD}, true}, {0x7F}, {{'?'}, true});
}

TEST(ConverterTables, ConvertNothingWithoutAMap) {
    expectConversions(convertersOf(nullptr, nullptr), {'A', 0xFF}, {}, {'A', 0x4E00}, {});
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
    VynCharSetConverterEUC_JP without0212(jis0208, jis0201, nullptr, VYNCS_EUC_JP);
    EXPECT_EQ(ConvertKit(without0212).encode({0x203E}, 8).output, (Bytes{0xA1, 0xB1})) << "nor JIS X 0201 then";
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
    constexpr sMBCSExTable map[] = {{0x41, 0x20000}, {0, 0}};
    constexpr unsigned char noLeads[256] = {};
    VynCharSetConverterDBCSEx converter(map, noLeads, VYNCS_SJIS0213);
    ConvertKit kit(converter);
    for (unsigned long room = 0; room <= 202; ++room)
        EXPECT_EQ(kit.decode(Bytes(100, 0x41), room).output.size(), std::min(room / 2 * 2, 200UL));
}

TEST(ConverterTables, StartGb18030RangesAtTheLastOneBeforeTheBucket) {
    VynCharSetConverterGB18030 converter(oGBKmap, VYNCS_GB18030);
    // The buckets hold 256 keys from 0x8100 on, and 128 units; what lies outside counts to the first or last.
    auto const expectedStart = [](sGB18030Range const* range, unsigned bucketStart) {
        while (range[1].first != 0 && range[1].first < bucketStart)
            ++range;
        return *range;
    };
    auto const firstOf = [](sGB18030Range const& range) { return range.first; };
    for (unsigned key = 0; key < 0x20000; ++key)
        ASSERT_EQ(firstOf(*converter.getGB2UniRange(key)),
                  firstOf(expectedStart(oGB2UniRange, std::clamp(key, 0x8100U, 0x19FFFU) / 256 * 256)));
    for (unsigned unit = 0; unit < 0x20000; ++unit)
        ASSERT_EQ(firstOf(*converter.getUni2GBRange(unit)),
                  firstOf(expectedStart(oUni2GBRange, std::min(unit, 0xFFFFU) / 128 * 128)));
}

TEST(ConverterTables, AreNotBuiltForNothing) {
    constexpr unsigned short map[] = {0x41, 0x61, 0, 0};
    constexpr sMBCSExTable extendedMap[] = {{0x41, 0x61}, {0, 0}};
    unsigned short units[2] = {};
    char bytes[2] = {};
    for (auto const& converter : convertersOf(map, extendedMap)) {
        allocationsLeft = 0;
        EXPECT_NO_THROW(converter->toUTF16(nullptr, "A", 1, ILLCHAR_REPLACE, nullptr, -1));
        EXPECT_NO_THROW(converter->fromUTF16(bytes, nullptr, 1, ILLCHAR_REPLACE, nullptr));
        EXPECT_NO_THROW(converter->getNumUnits("A", 0));
        EXPECT_NO_THROW(converter->getNumBytes(units, 0));
        EXPECT_THROW(converter->fromUTF16(bytes, units, 1, ILLCHAR_REPLACE, nullptr), std::bad_alloc);
        allocationsLeft = unlimitedAllocations;
        EXPECT_EQ(converter->getNumBytes(units, 1), 0UL) << "and are built when memory is there again";
    }
}

struct OpenConverter : VynCharSetConverterDBCS {
    using VynCharSetConverterDBCS::VynCharSetConverterDBCS;
    using VynCharSetConverterMBCS::forwardTable;
};

// That tables which threads build are complete is tested for every set with the processes of the charset tests.
TEST(ConverterTablesThread, AreBuiltOnce) {
    constexpr unsigned threadCount = 8;
    allocationsAreSlow = true;
    for (unsigned round = 0; round < 3; ++round) {
        OpenConverter converter(oCP932map, oCP932Type, VYNCS_WCP932);
        std::set<void const*> built;
        std::mutex mutex;
        std::barrier start(threadCount);
        std::vector<std::jthread> threads;
        for (unsigned i = 0; i < threadCount; ++i)
            threads.emplace_back([&, i] {
                unsigned short units[2] = {0x3042};
                char bytes[4] = "\x82\xA0";
                start.arrive_and_wait();
                if (i % 2 == 0) // either direction may be the first
                    EXPECT_EQ(converter.toUTF16(units, bytes, 1, ILLCHAR_STOP, nullptr, -1), 1UL);
                else
                    EXPECT_EQ(converter.fromUTF16(bytes, units, 2, ILLCHAR_STOP, nullptr), 2UL);
                std::scoped_lock const lock(mutex);
                built.insert(converter.forwardTable());
            });
        threads.clear();
        EXPECT_EQ(built.size(), 1U);
    }
    allocationsAreSlow = false;
}

} // namespace
