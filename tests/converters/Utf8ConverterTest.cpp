#include "tests/support/ConvertKit.h"
#include "tests/support/Random.h"

#include <climits>
#include <cstdio>
#include <string>

namespace {

constexpr auto untilTerminator = static_cast<unsigned long>(-1);

Bytes bytesOf(std::string const& text) {
    return {text.begin(), text.end()};
}

// The rules of the set in their plainest form, as the oracle. A text beyond its end reads as terminators.
struct Oracle {
    static Converted<unsigned short> decode(Bytes const& text, unsigned long room, int maxSrc) {
        Converted<unsigned short> result;
        unsigned long at = 0;
        auto const byte = [&](unsigned long i) { return i < text.size() ? unsigned{text[i]} : 0U; };
        auto const put = [&](unsigned unit) {
            result.output.push_back(static_cast<unsigned short>(unit));
            --room;
        };
        while (room != 0 && byte(at) != 0) {
            unsigned const lead = byte(at++);
            unsigned const trails = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
            bool good = trails < 3 || room >= 2;
            unsigned value = lead & (trails == 1 ? 0x1FU : 0x0FU);
            for (unsigned i = 0; i < trails; ++i) {
                good = good && (byte(at + i) & 0xC0U) == 0x80;
                value = value << 6 | (byte(at + i) & 0x3FU);
            }
            if (lead < 0x80) {
                put(lead);
            } else if (trails == 0 || !good) {
                result.illegal = true;
                if (trails != 0)
                    put(0xFFFD);
            } else if (trails < 3) {
                put(value);
                at += trails;
            } else {
                put((value >> 10) + 0xD7C0);
                put((value & 0x3FF) + 0xDC00);
            }
            if (maxSrc > 0 && at >= static_cast<unsigned long>(maxSrc))
                break;
        }
        return result;
    }

    static Converted<unsigned char> encode(Units const& text, unsigned long room, ILLCHAR_OPTYPE op) {
        Converted<unsigned char> result;
        unsigned long at = 0;
        auto const unit = [&](unsigned long i) { return i < text.size() ? unsigned{text[i]} : 0U; };
        auto const put = [&](std::initializer_list<unsigned> bytes) {
            if (room < bytes.size())
                return false;
            result.output.insert(result.output.end(), bytes.begin(), bytes.end());
            room -= bytes.size();
            return true;
        };
        for (bool fits = true; fits && room != 0 && unit(at) != 0;) {
            unsigned const u = unit(at++), w = unit(at);
            if (u < 0x80) {
                fits = put({u});
            } else if (u < 0x800) {
                fits = put({0xC0 | u >> 6, 0x80 | (u & 0x3F)});
            } else if (u < 0xD800 || u > 0xDBFF) {
                fits = put({0xE0 | u >> 12, 0x80 | (u >> 6 & 0x3F), 0x80 | (u & 0x3F)});
            } else if (w >= 0xDC00 && w <= 0xDFFF) {
                unsigned const c = 0x10000 + ((u & 0x3FF) << 10) + (w & 0x3FF);
                fits = put({0xF0 | c >> 18, 0x80 | (c >> 12 & 0x3F), 0x80 | (c >> 6 & 0x3F), 0x80 | (c & 0x3F)});
                ++at;
            } else {
                result.illegal = true;
                char escape[7];
                std::snprintf(escape, sizeof escape, "U+%04X", u);
                fits = op != ILLCHAR_STOP && (op == ILLCHAR_ESCAPE ? room >= 6 : put({'?'}));
                if (fits && op == ILLCHAR_ESCAPE) {
                    result.output.insert(result.output.end(), escape, escape + 6);
                    room -= 5;
                    ++at;
                }
            }
        }
        return result;
    }
};

class Utf8Converter : public testing::Test {
protected:
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(VYNCS_UTF8);
    ConvertKit kit{converter};

    Converted<unsigned short> decode(Bytes const& text, unsigned long room, int maxSrc = -1) {
        return kit.decode(text, room, {.op = ILLCHAR_STOP, .maxSrc = maxSrc});
    }

    // Not by the kit: an escape leaves the room and may step over the terminator.
    Converted<unsigned char> encode(Units text, unsigned long room, ILLCHAR_OPTYPE op) {
        text.resize(text.size() + 8);
        Bytes dst(room + text.size() + 4, 0x5A);
        bool illegal = true;
        unsigned long const bytes = converter.fromUTF16(dst.data(), text.data(), room, op, &illegal);
        EXPECT_EQ(dst[bytes], 0);
        EXPECT_EQ(std::count(dst.begin(), dst.end(), 0x5A) + static_cast<long>(bytes) + 1,
                  static_cast<long>(dst.size()));
        dst.resize(bytes);
        return {dst, illegal};
    }
};

TEST_F(Utf8Converter, ConvertsTheNamedCases) {
    struct Row {
        char const* bytes;
        unsigned long room;
        Converted<unsigned short> expected;
    };
    Row const decoded[] = {{"\xF0\x9F\x98\x80", 9, {{0xD83D, 0xDE00}, true}},  // its continuation bytes are read again
                           {"\xF0\x9F\x98\x80", 2, {{0xD83D, 0xDE00}, false}}, // but not behind the last room
                           {"\xF0\x9F\x98\x80", 1, {{0xFFFD}, true}},
                           {"\xC3\x28", 9, {{0xFFFD, 0x28}, true}},
                           {"\x80\x41", 9, {{0x41}, true}},
                           {"\xC0\x80\x41", 9, {{0, 0x41}, false}},
                           {"\xED\xA0\x80", 9, {{0xD800}, false}},
                           {"\xF4\x90\x80\x80", 9, {{0xDC00, 0xDC00}, true}},
                           {"\xEF\xBB\xBF\x41", 9, {{0xFEFF, 0x41}, false}}};
    for (Row const& row : decoded)
        EXPECT_EQ(decode(bytesOf(row.bytes), row.room), row.expected) << row.bytes;

    struct EncodeRow {
        Units units;
        unsigned long room;
        ILLCHAR_OPTYPE op;
        char const* bytes;
        bool illegal;
    };
    EncodeRow const encoded[] = {
        {{0xD800, 0x41}, 20, ILLCHAR_REPLACE, "?A", true},
        {{0xD800, 0x41}, 20, ILLCHAR_STOP, "", true},
        {{0xD800, 0x41}, 20, ILLCHAR_ESCAPE, "U+D800", true},
        {{0xD800, 0x41}, 5, ILLCHAR_ESCAPE, "", true},
        {{0xD800, 0x41, 0x42, 0x43}, 7, ILLCHAR_ESCAPE, "U+D800BC", true}, // eight bytes in a room of seven
        {{0xDC00}, 20, ILLCHAR_STOP, "\xED\xB0\x80", false},
        {{0xE9}, 1, ILLCHAR_REPLACE, "", false}};
    for (EncodeRow const& row : encoded)
        EXPECT_EQ(encode(row.units, row.room, row.op), (Converted<unsigned char>{bytesOf(row.bytes), row.illegal}))
            << row.bytes;
}

TEST_F(Utf8Converter, CountsTheNamedCases) {
    struct Row {
        char const* bytes;
        unsigned long len, units;
    };
    for (auto const& [bytes, len, units] :
         {Row{"A\x80"
              "B",
              untilTerminator, 1},
          Row{"\xF0\x9F\x98\x80", untilTerminator, 2}, Row{"\xF0\x9F\x98\x80", 3, 0}, Row{"\xC3(", untilTerminator, 1},
          Row{"A\xC3", untilTerminator, 1}, Row{"ABC", 2, 2}})
        EXPECT_EQ(converter.getNumUnits(bytes, len), units) << bytes;
    struct BytesRow {
        Units units; // ended by a zero unit
        unsigned long len, bytes;
    };
    for (auto const& [units, len, bytes] :
         {BytesRow{{0xD83D, 0xDE00, 0}, untilTerminator, 4}, BytesRow{{0xD83D, 0xDE00, 0}, 1, 0},
          BytesRow{{0x41, 0xD83D, 0}, untilTerminator, 1}, BytesRow{{0xD83D, 0x41, 0}, untilTerminator, 2},
          BytesRow{{0xD83D, 0xE9, 0xDC00, 0}, untilTerminator, 6}, BytesRow{{0xE9, 0x65E5, 0}, 1, 2}})
        EXPECT_EQ(converter.getNumBytes(units.data(), len), bytes);
}

// Long regular runs of one length, and short irregular pieces, alternate.
TEST_F(Utf8Converter, ConvertsHostileTextAsTheOracle) {
    TestRandom random;
    static char const* const bytePieces[] = {"a",
                                             "\xC3\xA9",
                                             "\xE6\x97\xA5",
                                             "\xF0\x9F\x98\x80",
                                             "\x80",
                                             "\xC3",
                                             "\xE6\x97",
                                             "\xF0\x9F\x98",
                                             "\xC0\x80",
                                             "\xED\xA0\x80",
                                             "\xF4\x90\x80\x80",
                                             "\xFF\xBF\xBF\xBF",
                                             "\xFE",
                                             "\xF0\x80\x80\x80",
                                             "\xE6"};
    static Units const unitPieces[] = {{0x61},   {0xE9}, {0x65E5}, {0xDC00}, {0xD800}, {0xDBFF, 0xDFFF},
                                       {0xDFFF}, {0x7F}, {0x80},   {0x7FF},  {0x800},  {0xFFFF}};
    for (int round = 0; round < 3000; ++round) {
        Bytes text;
        Units units;
        while (text.size() < 300 && random.below(12) != 0) {
            std::string const piece = bytePieces[random.below(std::size(bytePieces))];
            Units const& unitPiece = unitPieces[random.below(std::size(unitPieces))];
            for (unsigned repeats = random.below(4) == 0 ? random.below(70) : 1; repeats != 0; --repeats) {
                text.insert(text.end(), piece.begin(), piece.end());
                units.insert(units.end(), unitPiece.begin(), unitPiece.end());
            }
        }
        if (random.below(8) == 0)
            for (unsigned char& byte : text)
                byte = static_cast<unsigned char>(1 + random.below(255));
        bool const tight = random.below(3) == 0;
        SCOPED_TRACE(testing::Message() << "seed " << random.seed() << ", round " << round);

        unsigned long const room = tight ? random.below(text.size() + 4) : text.size();
        Converted<unsigned short> const expected = Oracle::decode(text, room, -1);
        ASSERT_EQ(decode(text, room), expected);
        ASSERT_EQ(decode(text, room, INT_MAX), expected); // the literal path by itself
        int const limit = 1 + static_cast<int>(random.below(40));
        ASSERT_EQ(decode(text, room, limit), Oracle::decode(text, room, limit));
        unsigned long const byteRoom = tight ? random.below(units.size() * 3 + 4) : units.size() * 6;
        for (ILLCHAR_OPTYPE const op : policies)
            ASSERT_EQ(encode(units, byteRoom, op), Oracle::encode(units, byteRoom, op));
    }
}

TEST_F(Utf8Converter, NeverScansBeyondTheRoom) {
    // With the whole of it scanned in each call, this would take minutes.
    std::string const text(32 << 20, 'x');
    Units dst(16);
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(converter.toUTF16(dst.data(), text.c_str(), 8, ILLCHAR_REPLACE, nullptr, -1), 8UL);
}

} // namespace
