#include <vynulib/VynUChar.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr unsigned unitCount = 0x10000;

unsigned short unitOf(unsigned value) {
    return static_cast<unsigned short>(value);
}

unsigned classOf(unsigned unit) {
    return VynUChar::getCharClass(unitOf(unit));
}

unsigned upperOf(unsigned unit) {
    return VynUChar::m_gUpperCaseTable.getValue(unitOf(unit));
}

unsigned lowerOf(unsigned unit) {
    return VynUChar::m_gLowerCaseTable.getValue(unitOf(unit));
}

std::string hex(unsigned value) {
    char text[16];
    std::snprintf(text, sizeof text, "U+%04X", value);
    return text;
}

struct ClassRow {
    unsigned first, last, value;
};

// Classes that the tests know from the Unicode Character Database and the names of the bits.
constexpr ClassRow classRows[] = {
    {0x0000, 0x0008, 0},      {0x0009, 0x000A, 0x0001}, {0x000B, 0x000C, 0},      {0x000D, 0x000D, 0x0001},
    {0x0020, 0x0020, 0x0001}, {0x0021, 0x0023, 0x0010}, {0x0030, 0x0039, 0x0002}, {0x0041, 0x005A, 0x0044},
    {0x0061, 0x007A, 0x0084}, {0x00A0, 0x00A0, 0x0001}, {0x00B2, 0x00B2, 0x0002}, {0x01C5, 0x01C5, 0x0104},
    {0x01C8, 0x01C8, 0x0104}, {0x01CB, 0x01CB, 0x0104}, {0x01F2, 0x01F2, 0x0104}, {0x02B0, 0x02B8, 0x0204},
    {0x0300, 0x0345, 0x0008}, {0x0378, 0x0378, 0},      {0x05D0, 0x05EA, 0x0024}, {0x05B0, 0x05B9, 0x0028},
    {0x060C, 0x060C, 0x0030}, {0x0660, 0x0669, 0x0002}, {0x2000, 0x200B, 0x0001}, {0x200F, 0x200F, 0x0020},
    {0x2028, 0x2029, 0x0001}, {0x3000, 0x3000, 0x8001}, {0x3001, 0x3003, 0x0410}, {0x3041, 0x3094, 0x0404},
    {0xFF10, 0xFF19, 0x8002}, {0xFF21, 0xFF3A, 0x8044}, {0xFF61, 0xFF65, 0x4410}, {0xFFE8, 0xFFEE, 0x4000},
    {0xFFEF, 0xFFFF, 0},
};

// What getCharClass answers without the table, which holds none of these units.
constexpr ClassRow blockRows[] = {
    {0x2E80, 0x2E99, 0x0404}, {0x2E9B, 0x2EF3, 0x0404}, {0x2F00, 0x2FD5, 0x0404},
    {0x3400, 0x4DB5, 0x0404}, {0x4E00, 0x9FA5, 0x0404}, {0xA000, 0xA48C, 0x0404},
    {0xAC00, 0xD7A3, 0x0404}, {0xD800, 0xDFFF, 0x1000}, {0xF900, 0xFA2D, 0x0404},
};

TEST(VynUChar, ClassesOfKnownCharacters) {
    for (ClassRow const& row : classRows)
        for (unsigned unit = row.first; unit <= row.last; ++unit)
            EXPECT_EQ(classOf(unit), row.value) << hex(unit);
}

TEST(VynUChar, BlocksAreAnsweredByRangeAndTheRestByTheTable) {
    ClassRow const* block = blockRows;
    for (unsigned unit = 0; unit < unitCount; ++unit) {
        if (block != std::end(blockRows) && unit > block->last)
            ++block;
        bool const inBlock = block != std::end(blockRows) && unit >= block->first;
        unsigned const listed = VynUChar::m_gCharClassTable.getValue(unitOf(unit));
        ASSERT_EQ(listed & (inBlock ? 0xFFFFU : 0x3800U), 0U) << hex(unit);
        ASSERT_EQ(classOf(unit), inBlock ? block->value : listed) << hex(unit);
    }
}

TEST(VynUChar, CaseMappingsLeadFromOneCaseToTheOther) {
    // Numbers and circled letters have a case mapping, but are no letters.
    auto const isCasedSymbol = [](unsigned unit) {
        return (unit >= 0x2160 && unit <= 0x217F) || (unit >= 0x24B6 && unit <= 0x24E9);
    };
    unsigned uppers = 0, lowers = 0;
    for (unsigned unit = 0; unit < unitCount; ++unit) {
        if (unsigned const upper = upperOf(unit)) {
            ++uppers;
            EXPECT_TRUE(isCasedSymbol(unit) || ((classOf(unit) & 0x180) && (classOf(upper) & 0x140))) << hex(unit);
            EXPECT_TRUE(lowerOf(upper)) << hex(unit);
        }
        if (unsigned const lower = lowerOf(unit)) {
            ++lowers;
            EXPECT_TRUE(isCasedSymbol(unit) || ((classOf(unit) & 0x140) && (classOf(lower) & 0x80))) << hex(unit);
        }
    }
    EXPECT_EQ(uppers, 673U);
    EXPECT_EQ(lowers, 704U);
}

TEST(VynUChar, CaseMappingsKeptExactly) {
    struct {
        unsigned unit, last, lower, upper; // the mappings count up along a range; 0 for none
    } const rows[] = {
        {0x0041, 0x005A, 0x0061, 0}, {0x0061, 0x007A, 0, 0x0041},      {0x0130, 0x0130, 0x0069, 0},
        {0x0131, 0x0131, 0, 0x0049}, {0x00FF, 0x00FF, 0, 0x0178},      {0x00DF, 0x00DF, 0, 0},
        {0x03C2, 0x03C2, 0, 0},      {0x01C5, 0x01C5, 0x01C6, 0x01C4}, {0x018E, 0x018E, 0x0258, 0},
        {0x0258, 0x0258, 0, 0x018E}, {0x10A0, 0x10C5, 0x10D0, 0},      {0x10D0, 0x10F5, 0, 0},
        {0x1F80, 0x1F87, 0, 0x1F88}, {0x1F90, 0x1F97, 0, 0x1F98},      {0x1FA0, 0x1FA7, 0, 0x1FA8},
        {0x1FB3, 0x1FB3, 0, 0x1FBC}, {0x1FC3, 0x1FC3, 0, 0x1FCC},      {0x1FF3, 0x1FF3, 0, 0x1FFC},
        {0x03B1, 0x03C1, 0, 0x0391}, {0x0430, 0x044F, 0, 0x0410},      {0x0410, 0x042F, 0x0430, 0},
        {0x0561, 0x0586, 0, 0x0531}, {0xFF21, 0xFF3A, 0xFF41, 0},      {0xD800, 0xDFFF, 0, 0},
    };
    for (auto const& row : rows)
        for (unsigned unit = row.unit; unit <= row.last; ++unit) {
            EXPECT_EQ(lowerOf(unit), row.lower ? row.lower + (unit - row.unit) : 0) << hex(unit);
            EXPECT_EQ(upperOf(unit), row.upper ? row.upper + (unit - row.unit) : 0) << hex(unit);
        }
}

TEST(VynUChar, CharactersOfSurrogatePairs) {
    struct {
        unsigned short high, low;
        bool beyondBmp;
    } const rows[] = {
        {0xD83D, 0xDE00, true},  {0xD800, 0xDC00, true},  {0xDBFF, 0xDFFF, true},
        {0xD7FF, 0xDC00, false}, {0xDC00, 0xDC00, false}, {0xD800, 0xDBFF, false},
        {0xD800, 0xE000, false}, {0x0041, 0x0000, false}, {0xDC00, 0xD800, false},
    };
    VynUChar assigned(0, 0);
    for (auto const& row : rows) {
        assigned = VynUChar(row.high, row.low);
        EXPECT_EQ(assigned.getCharClass(), row.beyondBmp ? 0x1000 : 0) << hex(row.high) << hex(row.low);
        EXPECT_EQ(assigned.isNonChar(), !row.beyondBmp);
        EXPECT_FALSE(assigned.isDigit() || assigned.isLetter() || assigned.isPunctuation() || assigned.isWhiteSpace());
    }
}

constexpr unsigned short overlappingRanges[] = {
    0x0001, 0x0001, 7,      // the smallest unit that a list can name
    0x00F0, 0x0310, 0xFF00, // over whole pages; counting, the value wraps to 0 at U+01F0
    0x0200, 0x01FF, 9,      // empty
    0x0300, 0x0302, 5,      // in place of what was there
    0xFFFE, 0xFFFF, 3,      // up to the last unit
    0x0000, 0xFFFF, 1,      // the end of the list
    0x0400, 0x0400, 1,      // behind it
};

unsigned expectedValue(unsigned unit, bool counting) {
    if (unit == 1)
        return 7;
    if (unit >= 0x0300 && unit <= 0x0302)
        return counting ? 5 + (unit - 0x0300) : 5;
    if (unit >= 0x00F0 && unit <= 0x0310)
        return counting ? unitOf(0xFF00 + (unit - 0x00F0)) : 0xFF00;
    if (unit >= 0xFFFE)
        return counting ? 3 + (unit - 0xFFFE) : 3;
    return 0;
}

TEST(VynUCharTable, UnfoldsItsRangesOnceWhileManyThreadsAsk) {
    for (bool const counting : {false, true})
        for (int round = 0; round < 20; ++round) {
            VynUCharTable table(overlappingRanges, counting);
            std::atomic<unsigned> waiting{4}, wrong{0};
            auto const readAll = [&](unsigned first) {
                --waiting;
                while (waiting != 0)
                    std::this_thread::yield();
                for (unsigned i = 0; i < unitCount; ++i) {
                    unsigned const unit = (first + i) % unitCount;
                    wrong += table.getValue(unitOf(unit)) != expectedValue(unit, counting);
                }
            };
            std::vector<std::thread> threads;
            for (unsigned first : {0x0000U, 0x00F0U, 0x0300U, 0xFFFEU})
                threads.emplace_back(readAll, first);
            for (std::thread& thread : threads)
                thread.join();
            table.load();
            EXPECT_EQ(wrong, 0U) << "counting " << counting << ", round " << round;
        }
}

} // namespace
