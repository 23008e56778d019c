#include <vynulib/VynCharSetConverterUTF32.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using Units = std::vector<unsigned short>;
using Values = std::vector<unsigned>;

constexpr auto untilTerminator = static_cast<unsigned long>(-1);

VynCharSetConverter& converterOf(VynCharSet cs) {
    return *VynCharSetConverter::getConverter(cs);
}

// The source stands at an odd address, as byte buffers may.
template <class Element>
class Unaligned {
public:
    explicit Unaligned(std::vector<Element> elements) : m_bytes((elements.size() + 1) * sizeof(Element) + 1) {
        std::memcpy(m_bytes.data() + 1, elements.data(), elements.size() * sizeof(Element));
    }
    void const* data() const { return m_bytes.data() + 1; }

private:
    std::vector<char> m_bytes;
};

struct Decoding {
    Units units;
    bool illegal;
    bool operator==(Decoding const&) const = default;
};

Decoding decode(VynCharSet cs, void const* src, unsigned long room, int maxSrc) {
    Units dst(room + 1, 0xABCD);
    bool illegal = true;
    unsigned long const units = converterOf(cs).toUTF16(dst.data(), src, room, ILLCHAR_STOP, &illegal, maxSrc);
    EXPECT_EQ(dst[units], 0);
    dst.resize(units);
    return {dst, illegal};
}

std::string encode(VynCharSet cs, Units text, unsigned long room, ILLCHAR_OPTYPE op, bool expectIllegal) {
    text.push_back(0);
    unsigned long const terminator = converterOf(cs).getNullCharSize();
    std::string buffer(1 + room + terminator + 1, '\x5A'); // from an odd address on, a sentinel at the end
    bool illegal = !expectIllegal;
    unsigned long const bytes = converterOf(cs).fromUTF16(buffer.data() + 1, text.data(), room, op, &illegal);
    EXPECT_EQ(illegal, expectIllegal);
    EXPECT_EQ(buffer.substr(1 + bytes, terminator), std::string(terminator, '\0'));
    EXPECT_EQ(buffer.back(), '\x5A');
    return buffer.substr(1, bytes);
}

std::string bytesOf(Values const& values) {
    return {reinterpret_cast<char const*>(values.data()), values.size() * 4};
}

TEST(Utf16Converter, CopiesWithinItsLimits) {
    Unaligned<unsigned short> const text({0x41, 0xD800, 0x65E5, 0x42});
    struct Row {
        unsigned long room;
        int maxSrc;
        Units units;
    };
    for (Row const& row : {Row{10, 3, {0x41, 0xD800, 0x65E5}}, Row{10, 9, {0x41, 0xD800, 0x65E5, 0x42}},
                           Row{2, 9, {0x41, 0xD800}}, Row{10, 0, {}}, Row{10, -1, {}}, Row{0, 3, {}}})
        EXPECT_EQ(decode(VYNCS_UTF16, text.data(), row.room, row.maxSrc), (Decoding{row.units, false})) << row.maxSrc;

    Units const units{0x41, 0xDC00, 0x42};
    for (unsigned long room = 0; room < 8; ++room)
        EXPECT_EQ(encode(VYNCS_UTF16, units, room, ILLCHAR_STOP, false),
                  std::string(reinterpret_cast<char const*>(units.data()), std::min(room / 2 * 2, 6UL)));

    EXPECT_EQ(converterOf(VYNCS_UTF16).getNumUnits(text.data(), untilTerminator), 4UL);
    EXPECT_EQ(converterOf(VYNCS_UTF16).getNumUnits(text.data(), 5), 2UL);
    EXPECT_EQ(converterOf(VYNCS_UTF16).getNumUnits(text.data(), 1), 0UL);
    Units const counted{0x41, 0x42, 0x43, 0};
    EXPECT_EQ(converterOf(VYNCS_UTF16).getNumBytes(counted.data(), untilTerminator), 6UL);
    EXPECT_EQ(converterOf(VYNCS_UTF16).getNumBytes(counted.data(), 2), 4UL);
}

TEST(EscapedUtf16Converter, ReadsAndWritesEscapes) {
    struct Row {
        char const* bytes;
        int maxSrc;
        Units units;
    };
    for (Row const& row : {Row{"U+00E9", -1, {0xE9}}, Row{"U+00e9", -1, {'U', '+', '0', '0', 'e', '9'}},
                           Row{"U+0041U+D800", -1, {0x41, 0xD800}}, Row{"U+12", -1, {'U', '+', '1', '2'}},
                           Row{"\xE9", -1, {0xFFE9}}, Row{"U+0000A", -1, {0, 'A'}}, Row{"UU+00E9", -1, {'U', 0xE9}},
                           Row{"aU+00E9b", 2, {'a', 0xE9}}, Row{"ab", 1, {'a'}}, Row{"ab", 0, {'a', 'b'}}})
        EXPECT_EQ(decode(VYNCS_UTF16ESC, row.bytes, 20, row.maxSrc), (Decoding{row.units, false})) << row.bytes;

    Units const pair{0xD83D, 0xDE00};
    EXPECT_EQ(encode(VYNCS_UTF16ESC, pair, 12, ILLCHAR_STOP, false), "U+D83DU+DE00");
    EXPECT_EQ(encode(VYNCS_UTF16ESC, pair, 11, ILLCHAR_STOP, false), "U+D83D");
    EXPECT_EQ(encode(VYNCS_UTF16ESC, {'a', 0x80, 'U', '+'}, 9, ILLCHAR_REPLACE, false), "aU+0080U+");
    EXPECT_EQ(encode(VYNCS_UTF16ESC, {'a'}, 0, ILLCHAR_REPLACE, false), "");

    auto& converter = converterOf(VYNCS_UTF16ESC);
    EXPECT_EQ(converter.getNumUnits("U+12", untilTerminator), 4UL);
    EXPECT_EQ(converter.getNumUnits("U+00E9x", untilTerminator), 2UL);
    EXPECT_EQ(converter.getNumUnits("U+00E9", 5), 5UL); // the escape is cut off
    Units const counted{0x41, 0xE9, 0};
    EXPECT_EQ(converter.getNumBytes(counted.data(), untilTerminator), 7UL);
    EXPECT_EQ(converter.getNumBytes(counted.data(), 1), 1UL);
}

TEST(Utf32Converter, ConvertsFromAndToUtf16) {
    Unaligned<unsigned> const text({0x1F600, 0x41, 0xD800, 0x110000});
    struct Row {
        unsigned long room;
        int maxSrc;
        Units units;
    };
    for (Row const& row :
         {Row{9, -1, {0xD83D, 0xDE00, 0x41, 0xD800, 0xDC00, 0xDC00}}, Row{9, 2, {0xD83D, 0xDE00, 0x41}}, Row{1, -1, {}},
          Row{5, -1, {0xD83D, 0xDE00, 0x41, 0xD800}}, Row{9, 0, {}}})
        EXPECT_EQ(decode(VYNCS_UTF32, text.data(), row.room, row.maxSrc), (Decoding{row.units, false})) << row.room;

    struct EncodeRow {
        Units units;
        unsigned long room;
        ILLCHAR_OPTYPE op;
        Values values;
        bool illegal;
    };
    Values const escaped{'U', '+', 'D', '8', '0', '0', 0x41};
    for (EncodeRow const& row :
         {EncodeRow{{0xD800, 0x41}, 40, ILLCHAR_REPLACE, {'?', 0x41}, true},
          EncodeRow{{0xD800, 0x41}, 40, ILLCHAR_ESCAPE, escaped, true},
          EncodeRow{{0xD800, 0x41}, 23, ILLCHAR_ESCAPE, {}, true},
          EncodeRow{{0x42, 0xD800, 0x41}, 40, ILLCHAR_STOP, {0x42}, true},
          EncodeRow{{0xD83D, 0xDE00, 0xDC00}, 40, ILLCHAR_STOP, {0x1F600, 0xDC00}, false},
          EncodeRow{{0xD800}, 40, ILLCHAR_REPLACE, {'?'}, true},
          EncodeRow{{0x41, 0x42}, 7, ILLCHAR_STOP, {0x41}, false}, EncodeRow{{0x41}, 3, ILLCHAR_STOP, {}, false}})
        EXPECT_EQ(encode(VYNCS_UTF32, row.units, row.room, row.op, row.illegal), bytesOf(row.values)) << row.room;

    auto& converter = converterOf(VYNCS_UTF32);
    EXPECT_EQ(converter.getNumUnits(text.data(), untilTerminator), 4UL);
    EXPECT_EQ(converter.getNumUnits(text.data(), 11), 2UL);
    Units const counted{0xD83D, 0xDE00, 0xD800, 0x41, 0xD800, 0};
    EXPECT_EQ(converter.getNumBytes(counted.data(), untilTerminator), 12UL);
    EXPECT_EQ(converter.getNumBytes(counted.data(), 1), 0UL);
}

TEST(Utf32Converter, ConvertsToUtf8TestingTheRoomBehindEachCharacter) {
    struct Row {
        Values values; // ended by a zero value
        unsigned long room;
        std::string bytes;
        bool illegal;
        bool terminated;
    };
    Row const rows[] = {
        {{0xD800, 0}, 20, "\xEF\xBF\xBD", true, true},
        {{0x80000000, 0}, 20, "\xEF\xBF\xBD", true, true},
        {{0x7FFFFFFF, 0}, 20, "\xFD\xBF\xBF\xBF\xBF\xBF", false, true},
        {{0x3FFFFFF, 0x1FFFFF, 0xFFFF, 0x7FF, 0x7F, 0},
         40,
         "\xFB\xBF\xBF\xBF\xBF\xF7\xBF\xBF\xBF\xEF\xBF\xBF\xDF\xBF\x7F",
         false,
         true},
        {{0x41, 0x42, 0}, 1, "A", false, true},
        {{0x1F600, 0}, 1, "\xF0\x9F\x98\x80", false, false}, // written past the room, and then not terminated
        {{0x41, 0}, 0, "", false, true},
    };
    for (Row const& row : rows) {
        std::string dst(row.bytes.size() + 2, '\x5A');
        bool illegal = !row.illegal;
        auto* const out = reinterpret_cast<unsigned char*>(dst.data());
        EXPECT_EQ(converterOf(VYNCS_UTF32).toUTF8(out, row.values.data(), row.room, ILLCHAR_REPLACE, &illegal),
                  row.bytes.size());
        EXPECT_EQ(illegal, row.illegal);
        EXPECT_EQ(dst, row.bytes + (row.terminated ? '\0' : '\x5A') + '\x5A');
    }
}

TEST(Utf32Converter, ConvertsFromUtf8Strictly) {
    struct Row {
        char const* bytes;
        unsigned value;
        long advance;
    };
    auto& converter = dynamic_cast<VynCharSetConverterUTF32&>(converterOf(VYNCS_UTF32));
    for (Row const& row :
         {Row{"A", 0x41, 1}, Row{"\xC0\x80", 0xFFFD, 2}, Row{"\xE2(\xA1", 0xFFFD, 1}, Row{"\xEF\xBF\xBF", 0xFFFD, 3},
          Row{"\xED\xA0\x80", 0xFFFD, 3}, Row{"\xF4\x90\x80\x80", 0x110000, 4},
          Row{"\xFD\xBF\xBF\xBF\xBF\xBF", 0x7FFFFFFF, 6}, Row{"\xF8\x88\x80\x80\x80", 0x200000, 5},
          Row{"\xF8\x87\xBF\xBF\xBF", 0xFFFD, 5}, Row{"\x80", 0xFFFD, 1}, Row{"\xFE", 0xFFFD, 1},
          Row{"\xFC\x84", 0xFFFD, 1}, Row{"\xE6\x97\xA5", 0x65E5, 3}}) {
        std::string text = row.bytes;
        auto* const start = reinterpret_cast<unsigned char*>(text.data());
        auto* at = start;
        EXPECT_EQ(converter.UTF32fromUTF8(&at), row.value) << row.bytes;
        EXPECT_EQ(at - start, row.advance) << row.bytes;
    }
    Values dst(4, 0xAAAAAAAA);
    bool illegal = true;
    auto const* const text = reinterpret_cast<unsigned char const*>("\xE6\x97\xA5\xC3"
                                                                    "B");
    EXPECT_EQ(converter.fromUTF8(dst.data(), text, 2, ILLCHAR_STOP, &illegal), 2UL);
    EXPECT_EQ(dst, (Values{0x65E5, 0xFFFD, 0, 0xAAAAAAAA}));
    EXPECT_FALSE(illegal);
    EXPECT_EQ(converter.fromUTF8(nullptr, text, 2, ILLCHAR_STOP, &illegal), 0UL);
    EXPECT_EQ(converter.fromUTF8(dst.data(), nullptr, 2, ILLCHAR_STOP, nullptr), 0UL);
}

} // namespace
