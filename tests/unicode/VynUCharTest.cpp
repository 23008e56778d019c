#include <vynulib/VynUChar.h>

#include <gtest/gtest.h>

#include <atomic>
#include <ios>
#include <latch>
#include <thread>

namespace {

constexpr auto unitOf = [](unsigned value) { return static_cast<unsigned short>(value); };
constexpr auto classOf = [](unsigned unit) -> unsigned { return VynUChar::getCharClass(unitOf(unit)); };
constexpr auto upperOf = [](unsigned unit) -> unsigned { return VynUChar::m_gUpperCaseTable.getValue(unitOf(unit)); };
constexpr auto lowerOf = [](unsigned unit) -> unsigned { return VynUChar::m_gLowerCaseTable.getValue(unitOf(unit)); };

TEST(VynUChar, ClassesOfKnownCharacters) {
    // From U+2E80 on, the blocks that are no part of the table, each with the unassigned units behind it.
    unsigned const rows[][3] = {
        {0x0000, 0x0008, 0x0000}, {0x0009, 0x000A, 0x0001}, {0x000B, 0x000C, 0x0000}, {0x000D, 0x000D, 0x0001},
        {0x0020, 0x0020, 0x0001}, {0x0021, 0x0023, 0x0010}, {0x0030, 0x0039, 0x0002}, {0x0041, 0x005A, 0x0044},
        {0x0061, 0x007A, 0x0084}, {0x00A0, 0x00A0, 0x0001}, {0x00B2, 0x00B2, 0x0002}, {0x01C5, 0x01C5, 0x0104},
        {0x01F2, 0x01F2, 0x0104}, {0x02B0, 0x02B8, 0x0204}, {0x0300, 0x0345, 0x0008}, {0x0378, 0x0378, 0x0000},
        {0x05D0, 0x05EA, 0x0024}, {0x05B0, 0x05B9, 0x0028}, {0x060C, 0x060C, 0x0030}, {0x0660, 0x0669, 0x0002},
        {0x2000, 0x200B, 0x0001}, {0x200F, 0x200F, 0x0020}, {0x2028, 0x2029, 0x0001}, {0x3000, 0x3000, 0x8001},
        {0x3001, 0x3003, 0x0410}, {0x3041, 0x3094, 0x0404}, {0xFF10, 0xFF19, 0x8002}, {0xFF21, 0xFF3A, 0x8044},
        {0xFF61, 0xFF65, 0x4410}, {0xFFE8, 0xFFEE, 0x4000}, {0xFFEF, 0xFFFF, 0x0000}, {0x2E80, 0x2E99, 0x0404},
        {0x2E9A, 0x2E9A, 0x0000}, {0x2E9B, 0x2EF3, 0x0404}, {0x2EF4, 0x2EFF, 0x0000}, {0x2F00, 0x2FD5, 0x0404},
        {0x2FD6, 0x2FEF, 0x0000}, {0x3400, 0x4DB5, 0x0404}, {0x4DB6, 0x4DFF, 0x0000}, {0x4E00, 0x9FA5, 0x0404},
        {0x9FA6, 0x9FFF, 0x0000}, {0xA000, 0xA48C, 0x0404}, {0xA48D, 0xA48F, 0x0000}, {0xAC00, 0xD7A3, 0x0404},
        {0xD7A4, 0xD7FF, 0x0000}, {0xD800, 0xDFFF, 0x1000}, {0xF8FF, 0xF8FF, 0x0000}, {0xF900, 0xFA2D, 0x0404},
        {0xFA2E, 0xFAFF, 0x0000}};
    for (auto const& [first, last, value] : rows)
        for (unsigned unit = first; unit <= last; ++unit)
            EXPECT_EQ(classOf(unit), value) << std::hex << unit;
}

TEST(VynUChar, CaseMappingsLeadFromOneCaseToTheOther) {
    // Roman numbers and circled letters have a case mapping, but are no letters.
    auto const leads = [](unsigned unit, unsigned fromBits, unsigned other, unsigned toBits) {
        bool const letters = ((classOf(unit) | classOf(other)) & 0x0004) != 0;
        return letters ? (classOf(unit) & fromBits) && (classOf(other) & toBits) : classOf(unit) == classOf(other);
    };
    for (unsigned unit = 0; unit <= VynUChar::UTF16_MAX; ++unit) {
        unsigned const upper = upperOf(unit), lower = lowerOf(unit);
        EXPECT_TRUE(upper == 0 || (lowerOf(upper) != 0 && leads(unit, 0x0180, upper, 0x0140))) << std::hex << unit;
        EXPECT_TRUE(lower == 0 || leads(unit, 0x0140, lower, 0x0080)) << std::hex << unit;
    }
}

TEST(VynUChar, CaseMappingsKeptExactly) {
    // First and last unit, lower and upper case: the mappings count up along a range; 0 for none.
    unsigned const rows[][4] = {
        {0x0041, 0x005A, 0x0061, 0x0000}, {0x0061, 0x007A, 0x0000, 0x0041}, {0x0130, 0x0130, 0x0069, 0x0000},
        {0x0131, 0x0131, 0x0000, 0x0049}, {0x00FF, 0x00FF, 0x0000, 0x0178}, {0x00DF, 0x00DF, 0x0000, 0x0000},
        {0x03C2, 0x03C2, 0x0000, 0x0000}, {0x01C5, 0x01C5, 0x01C6, 0x01C4}, {0x018E, 0x018E, 0x0258, 0x0000},
        {0x0258, 0x0258, 0x0000, 0x018E}, {0x10A0, 0x10C5, 0x10D0, 0x0000}, {0x10D0, 0x10F5, 0x0000, 0x0000},
        {0x1F80, 0x1F87, 0x0000, 0x1F88}, {0x1F90, 0x1F97, 0x0000, 0x1F98}, {0x1FA0, 0x1FA7, 0x0000, 0x1FA8},
        {0x1FB3, 0x1FB3, 0x0000, 0x1FBC}, {0x1FC3, 0x1FC3, 0x0000, 0x1FCC}, {0x1FF3, 0x1FF3, 0x0000, 0x1FFC},
        {0xD800, 0xDFFF, 0x0000, 0x0000}};
    for (auto const& [first, last, lower, upper] : rows)
        for (unsigned unit = first; unit <= last; ++unit) {
            EXPECT_EQ(lowerOf(unit), lower == 0 ? 0 : lower + (unit - first)) << std::hex << unit;
            EXPECT_EQ(upperOf(unit), upper == 0 ? 0 : upper + (unit - first)) << std::hex << unit;
        }
}

TEST(VynUChar, CharactersOfSurrogatePairs) {
    unsigned short const rows[][3] = {{0xD83D, 0xDE00, 0x1000}, {0xD800, 0xDC00, 0x1000}, {0xDBFF, 0xDFFF, 0x1000},
                                      {0xD7FF, 0xDC00, 0x0000}, {0xDC00, 0xDC00, 0x0000}, {0xD800, 0xDBFF, 0x0000},
                                      {0xD800, 0xE000, 0x0000}, {0x0041, 0x0000, 0x0000}};
    VynUChar assigned(0, 0);
    for (auto const& [high, low, charClass] : rows) {
        assigned = VynUChar(high, low);
        EXPECT_EQ(assigned.getCharClass(), charClass) << std::hex << high << ' ' << low;
        EXPECT_EQ(assigned.isNonChar(), charClass == 0);
        EXPECT_FALSE(assigned.isDigit() || assigned.isLetter() || assigned.isPunctuation() || assigned.isWhiteSpace());
    }
}

TEST(VynUCharTable, UnfoldsItsRangesOnceWhileManyThreadsAsk) {
    static constexpr unsigned short ranges[] = {
        0x0001, 0x0001, 0x0007, // the smallest unit that a list can name
        0x00F0, 0x0310, 0xFF00, // over whole pages; counting, the value wraps to 0 at U+01F0
        0x0200, 0x01FF, 0x0009, // empty
        0x0300, 0x0302, 0x0005, // in place of what was there
        0xFFFE, 0xFFFF, 0x0003, // up to the last unit
        0x0000, 0xFFFF, 0x0001, // the end of the list
        0x0400, 0x0400, 0x0001, // behind it
    };
    // Unit, value, value when counting.
    unsigned short const rows[][3] = {{0x0000, 0x0000, 0x0000}, {0x0001, 0x0007, 0x0007}, {0x0002, 0x0000, 0x0000},
                                      {0x00EF, 0x0000, 0x0000}, {0x00F0, 0xFF00, 0xFF00}, {0x01EF, 0xFF00, 0xFFFF},
                                      {0x01F0, 0xFF00, 0x0000}, {0x0200, 0xFF00, 0x0010}, {0x0300, 0x0005, 0x0005},
                                      {0x0302, 0x0005, 0x0007}, {0x0303, 0xFF00, 0x0113}, {0x0310, 0xFF00, 0x0120},
                                      {0x0311, 0x0000, 0x0000}, {0x0400, 0x0000, 0x0000}, {0xFFFD, 0x0000, 0x0000},
                                      {0xFFFE, 0x0003, 0x0003}, {0xFFFF, 0x0003, 0x0004}};
    for (int round = 0; round < 100; ++round) {
        VynUCharTable table(ranges, false), counting(ranges, true);
        std::atomic<int> wrong = 0;
        std::latch start(4);
        auto const readAll = [&] {
            int differences = 0; // counted apart: touching what the threads share would order them
            start.arrive_and_wait();
            differences += classOf(0x0041) != 0x0044 || upperOf(0x0061) != 0x0041 || lowerOf(0x0041) != 0x0061;
            for (auto const& [unit, value, counted] : rows)
                differences += table.getValue(unit) != value || counting.getValue(unit) != counted;
            wrong += differences;
        };
        { std::jthread const a(readAll), b(readAll), c(readAll), d(readAll); }
        EXPECT_EQ(wrong, 0) << "round " << round;
    }
}

} // namespace
