#include <vynulib/VynCharSetConverterUTF8.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <iomanip>
#include <random>
#include <string>
#include <vector>

namespace {

using Units = std::vector<unsigned short>;

constexpr auto untilTerminator = static_cast<unsigned long>(-1);

struct Result {
    std::string output; // bytes, or the bytes of units
    bool illegal;
    bool operator==(Result const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Result const& result) {
    for (unsigned char const byte : result.output)
        out << std::hex << std::setw(2) << std::setfill('0') << unsigned{byte} << ' ';
    return out << (result.illegal ? "illegal" : "clean");
}

std::string bytesOf(Units const& units) {
    return {reinterpret_cast<char const*>(units.data()), units.size() * sizeof(unsigned short)};
}

// The rules of the set in their plainest form, as the oracle. A text beyond its terminator reads as terminators.
class Oracle {
public:
    static Result decode(std::string const& text, unsigned long room, int maxSrc) {
        Units out;
        bool illegal = false;
        unsigned long at = 0;
        auto const byte = [&](unsigned long i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
        auto const trail = [&](unsigned long i) { return (byte(i) & 0xC0U) == 0x80; };
        while (room != 0 && byte(at) != 0) {
            unsigned const lead = byte(at++);
            if (lead < 0x80) {
                out.push_back(static_cast<unsigned short>(lead));
                --room;
            } else if (lead < 0xC0) {
                illegal = true;
            } else {
                unsigned const trails = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
                bool good = trails < 3 || room >= 2;
                for (unsigned i = 0; i < trails; ++i)
                    good = good && trail(at + i);
                unsigned value = lead & (trails == 1 ? 0x1FU : 0x0FU);
                for (unsigned i = 0; i < trails; ++i)
                    value = value << 6 | (byte(at + i) & 0x3FU);
                if (!good) {
                    illegal = true;
                    out.push_back(0xFFFD);
                    --room;
                } else if (trails < 3) {
                    out.push_back(static_cast<unsigned short>(value));
                    at += trails;
                    --room;
                } else {
                    out.push_back(static_cast<unsigned short>((value >> 10) + 0xD7C0));
                    out.push_back(static_cast<unsigned short>((value & 0x3FF) + 0xDC00));
                    room -= 2;
                }
            }
            if (maxSrc > 0 && at >= static_cast<unsigned long>(maxSrc))
                break;
        }
        return {bytesOf(out), illegal};
    }

    static Result encode(Units const& text, unsigned long room, ILLCHAR_OPTYPE op) {
        std::string out;
        bool illegal = false;
        unsigned long at = 0;
        auto const unit = [&](unsigned long i) { return i < text.size() ? unsigned{text[i]} : 0U; };
        auto const put = [&](std::initializer_list<unsigned> bytes) {
            if (room < bytes.size())
                return false;
            for (unsigned const byte : bytes)
                out.push_back(static_cast<char>(byte));
            room -= bytes.size();
            return true;
        };
        while (room != 0 && unit(at) != 0) {
            unsigned const u = unit(at++);
            bool fits = true;
            if (u < 0x80) {
                fits = put({u});
            } else if (u < 0x800) {
                fits = put({0xC0 | u >> 6, 0x80 | (u & 0x3F)});
            } else if (u < 0xD800 || u > 0xDBFF) {
                fits = put({0xE0 | u >> 12, 0x80 | (u >> 6 & 0x3F), 0x80 | (u & 0x3F)});
            } else if (unsigned const w = unit(at); w >= 0xDC00 && w <= 0xDFFF) {
                unsigned const c = 0x10000 + ((u & 0x3FF) << 10) + (w & 0x3FF);
                fits = put({0xF0 | c >> 18, 0x80 | (c >> 12 & 0x3F), 0x80 | (c >> 6 & 0x3F), 0x80 | (c & 0x3F)});
                ++at;
            } else {
                illegal = true;
                if (op == ILLCHAR_STOP)
                    break;
                if (op == ILLCHAR_ESCAPE) {
                    char escape[7];
                    std::snprintf(escape, sizeof escape, "U+%04X", u);
                    fits = room >= 6;
                    if (fits) {
                        out += escape;
                        room -= 5;
                        ++at;
                    }
                } else {
                    fits = put({'?'});
                }
            }
            if (!fits)
                break;
        }
        return {out, illegal};
    }
};

VynCharSetConverter& converter() {
    return *VynCharSetConverter::getConverter(VYNCS_UTF8);
}

// Each conversion runs with sentinels behind its terminator, and tells when it touched one or lacks its terminator.
Result decode(std::string const& text, unsigned long room, int maxSrc) {
    constexpr unsigned short sentinel = 0xABCD;
    Units dst(room + 4, sentinel);
    bool illegal = true;
    unsigned long const units = converter().toUTF16(dst.data(), text.c_str(), room, ILLCHAR_STOP, &illegal, maxSrc);
    EXPECT_LE(units, room);
    EXPECT_EQ(dst[units], 0);
    for (unsigned long i = units + 1; i < dst.size(); ++i)
        EXPECT_EQ(dst[i], sentinel);
    dst.resize(units);
    return {bytesOf(dst), illegal};
}

Result encode(Units text, unsigned long room, ILLCHAR_OPTYPE op) {
    text.insert(text.end(), 8, 0); // an escape may step over the terminator
    std::string dst(room + text.size() + 4, '\x5A');
    bool illegal = true;
    unsigned long const bytes = converter().fromUTF16(dst.data(), text.data(), room, op, &illegal);
    EXPECT_EQ(dst[bytes], 0);
    EXPECT_EQ(dst.find_first_not_of('\x5A', bytes + 1), std::string::npos);
    dst.resize(bytes);
    return {dst, illegal};
}

std::mt19937& random() {
    static std::mt19937 engine = [] {
        char const* const given = std::getenv("VYNULIB_TEST_SEED");
        return std::mt19937(given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : 20030401U);
    }();
    return engine;
}

unsigned below(unsigned end) {
    return static_cast<unsigned>(random()() % end);
}

// Text in which long regular runs of one length, and short irregular pieces, alternate.
std::string hostileBytes() {
    static char const* const pieces[] = {"a",
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
    std::string text;
    while (text.size() < 300 && below(12) != 0) {
        std::string const piece = pieces[below(std::size(pieces))];
        for (unsigned repeats = below(4) == 0 ? below(70) : 1; repeats != 0; --repeats)
            text += piece;
    }
    if (below(8) == 0)
        for (char& byte : text)
            byte = static_cast<char>(1 + below(255));
    return text;
}

Units hostileUnits() {
    static unsigned short const pieces[] = {0x61,   0xE9, 0x65E5, 0xDC00, 0xD800, 0xDBFF,
                                            0xDFFF, 0x7F, 0x80,   0x7FF,  0x800,  0xFFFF};
    Units text;
    while (text.size() < 200 && below(12) != 0) {
        unsigned short const piece = pieces[below(std::size(pieces))];
        for (unsigned repeats = below(4) == 0 ? below(40) : 1; repeats != 0; --repeats) {
            text.push_back(piece);
            if (piece == 0xDBFF && below(4) != 0)
                text.push_back(0xDFFF);
        }
    }
    return text;
}

TEST(Utf8Converter, DecodesAndEncodesTheNamedCases) {
    struct Row {
        std::string bytes;
        unsigned long room;
        Units units;
        bool illegal;
    };
    Row const decoded[] = {
        {"\xF0\x9F\x98\x80", 9, {0xD83D, 0xDE00}, true},  // its continuation bytes are read again
        {"\xF0\x9F\x98\x80", 2, {0xD83D, 0xDE00}, false}, // but not when the pair takes the last room
        {"\xF0\x9F\x98\x80", 1, {0xFFFD}, true},
        {"\xC3\x28", 9, {0xFFFD, 0x28}, true},
        {"\x80\x41", 9, {0x41}, true},
        {"\xC0\x80\x41", 9, {0, 0x41}, false},
        {"\xED\xA0\x80", 9, {0xD800}, false},
        {"\xF4\x90\x80\x80", 9, {0xDC00, 0xDC00}, true},
        {"\xEF\xBB\xBF\x41", 9, {0xFEFF, 0x41}, false},
        {"\x41", 0, {}, false},
    };
    for (Row const& row : decoded)
        EXPECT_EQ(decode(row.bytes, row.room, -1), (Result{bytesOf(row.units), row.illegal})) << row.bytes;
    EXPECT_EQ(decode("AB", 9, 1), (Result{bytesOf({0x41}), false}));

    struct EncodeRow {
        Units units;
        unsigned long room;
        ILLCHAR_OPTYPE op;
        std::string bytes;
        bool illegal;
    };
    EncodeRow const encoded[] = {
        {{0xD800, 0x41}, 20, ILLCHAR_REPLACE, "?A", true},
        {{0xD800, 0x41}, 20, ILLCHAR_STOP, "", true},
        {{0xD800, 0x41}, 20, ILLCHAR_ESCAPE, "U+D800", true},
        {{0xD800, 0x41}, 5, ILLCHAR_ESCAPE, "", true},
        {{0xD800, 0x41, 0x42, 0x43}, 7, ILLCHAR_ESCAPE, "U+D800BC", true}, // eight bytes in a room of seven
        {{0xD800}, 20, static_cast<ILLCHAR_OPTYPE>(7), "?", true},
        {{0xDC00}, 20, ILLCHAR_STOP, "\xED\xB0\x80", false},
        {{0xE9}, 1, ILLCHAR_REPLACE, "", false},
    };
    for (EncodeRow const& row : encoded)
        EXPECT_EQ(encode(row.units, row.room, row.op), (Result{row.bytes, row.illegal})) << bytesOf(row.units);
}

TEST(Utf8Converter, CountsTheNamedCases) {
    struct Row {
        char const* bytes;
        unsigned long len;
        unsigned long units;
    };
    for (Row const& row :
         {Row{"A\x80"
              "B",
              untilTerminator, 1},
          Row{"\xF0\x9F\x98\x80", untilTerminator, 2}, Row{"\xF0\x9F\x98\x80", 3, 0}, Row{"\xC3(", untilTerminator, 1},
          Row{"A\xC3", untilTerminator, 1}, Row{"ABC", 2, 2}, Row{"ABC", 0, 0}})
        EXPECT_EQ(converter().getNumUnits(row.bytes, row.len), row.units) << row.bytes;
    struct BytesRow {
        Units units; // ended by a zero unit
        unsigned long len;
        unsigned long bytes;
    };
    for (BytesRow const& row :
         {BytesRow{{0xD83D, 0xDE00, 0}, untilTerminator, 4}, BytesRow{{0xD83D, 0xDE00, 0}, 1, 0},
          BytesRow{{0x41, 0xD83D, 0}, untilTerminator, 1}, BytesRow{{0xD83D, 0x41, 0}, untilTerminator, 2},
          BytesRow{{0xD83D, 0xE9, 0xDC00, 0}, untilTerminator, 6}, BytesRow{{0xE9, 0x65E5, 0}, 1, 2}})
        EXPECT_EQ(converter().getNumBytes(row.units.data(), row.len), row.bytes);
}

TEST(Utf8Converter, DecodesHostileTextAsTheOracle) {
    for (int round = 0; round < 3000; ++round) {
        std::string const text = hostileBytes();
        unsigned long const room = below(3) == 0 ? below(static_cast<unsigned>(text.size()) + 4) : text.size();
        SCOPED_TRACE(round);
        Result const expected = Oracle::decode(text, room, -1);
        ASSERT_EQ(decode(text, room, -1), expected);
        ASSERT_EQ(decode(text, room, INT_MAX), expected); // the literal path by itself
        int const limit = 1 + static_cast<int>(below(40));
        ASSERT_EQ(decode(text, room, limit), Oracle::decode(text, room, limit));
    }
}

TEST(Utf8Converter, EncodesHostileTextAsTheOracle) {
    for (int round = 0; round < 3000; ++round) {
        Units const text = hostileUnits();
        unsigned long const room = below(3) == 0 ? below(static_cast<unsigned>(text.size()) * 3 + 4) : text.size() * 6;
        SCOPED_TRACE(round);
        for (ILLCHAR_OPTYPE const op : {ILLCHAR_STOP, ILLCHAR_REPLACE, ILLCHAR_ESCAPE})
            ASSERT_EQ(encode(text, room, op), Oracle::encode(text, room, op));
    }
}

// One long text of every length of run against every alignment, so that blocks of any size meet every border.
TEST(Utf8Converter, TakesEveryIrregularityAtEveryPositionOfABlock) {
    for (std::string const irregular : {"\x80", "\xC3", "\xE6\x97", "\xF0\x9F\x98\x80", "\xC3\xA9", "\x01"})
        for (unsigned long before = 0; before < 70; ++before) {
            std::string const text = std::string(before, 'x') + irregular + std::string(70, 'y');
            for (unsigned long room : {text.size(), before, before + 1, before + 2, text.size() - 1})
                ASSERT_EQ(decode(text, room, -1), Oracle::decode(text, room, -1)) << before << ' ' << room;
        }
}

TEST(Utf8Converter, NeverScansBeyondTheRoom) {
    // With the whole of it scanned in each call, this would take minutes.
    std::string const text(32 << 20, 'x');
    Units dst(16);
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(converter().toUTF16(dst.data(), text.c_str(), 8, ILLCHAR_REPLACE, nullptr, -1), 8UL);
}

} // namespace
