#include "tests/support/ConvertKit.h"

#include <vynulib/VynCharSetConverterUTF32.h>

#include <cstring>
#include <string>

namespace {

using Values = std::vector<unsigned>;

constexpr auto untilTerminator = static_cast<unsigned long>(-1);

template <class Element>
Bytes bytesOf(std::vector<Element> const& elements) {
    auto const* const bytes = reinterpret_cast<unsigned char const*>(elements.data());
    return {bytes, bytes + elements.size() * sizeof(Element)};
}

Bytes bytesOf(std::string const& text) {
    return {text.begin(), text.end()};
}

struct Set {
    explicit Set(VynCharSet cs) : converter(*VynCharSetConverter::getConverter(cs)), kit(converter) {}

    VynCharSetConverter& converter;
    ConvertKit kit;
};

struct DecodeRow {
    Bytes bytes;
    unsigned long room;
    int maxSrc;
    Units units;
};

struct EncodeRow {
    Units units;
    unsigned long room;
    ILLCHAR_OPTYPE op;
    Bytes bytes;
    bool illegal = false;
};

void testRows(Set& set, std::vector<DecodeRow> const& decoded, std::vector<EncodeRow> const& encoded) {
    for (DecodeRow const& row : decoded)
        EXPECT_EQ(set.kit.decode(row.bytes, row.room, {.op = ILLCHAR_STOP, .maxSrc = row.maxSrc, .offset = 1}),
                  (Converted<unsigned short>{row.units, false}));
    for (EncodeRow const& row : encoded)
        EXPECT_EQ(set.kit.encode(row.units, row.room, {.op = row.op}),
                  (Converted<unsigned char>{row.bytes, row.illegal}));
}

TEST(Utf16Converter, CopiesWithinItsLimits) {
    Set set(VYNCS_UTF16);
    Units const units{0x41, 0xD800, 0x65E5, 0x42};
    Bytes const text = bytesOf(units);
    testRows(set,
             {{text, 10, 3, {0x41, 0xD800, 0x65E5}},
              {text, 10, 9, units},
              {text, 2, 9, {0x41, 0xD800}},
              {text, 10, 0, {}},
              {text, 10, -1, {}},
              {text, 0, 3, {}}},
             {{units, 9, ILLCHAR_STOP, text},
              {units, 5, ILLCHAR_STOP, bytesOf(Units{0x41, 0xD800})},
              {units, 1, ILLCHAR_STOP, {}}});
    EXPECT_EQ(set.kit.countUnits(text), 4UL);
    EXPECT_EQ(set.converter.getNumUnits(text.data(), 5), 2UL);
    EXPECT_EQ(set.converter.getNumUnits(text.data(), 1), 0UL);
    EXPECT_EQ(set.kit.countBytes(units), 8UL);
    EXPECT_EQ(set.converter.getNumBytes(units.data(), 2), 4UL);
}

TEST(EscapedUtf16Converter, ReadsAndWritesEscapes) {
    Set set(VYNCS_UTF16ESC);
    testRows(set,
             {{bytesOf("U+00E9"), 20, -1, {0xE9}},
              {bytesOf("U+00e9"), 20, -1, {'U', '+', '0', '0', 'e', '9'}},
              {bytesOf("U+0041U+D800"), 20, -1, {0x41, 0xD800}},
              {bytesOf("U+12"), 20, -1, {'U', '+', '1', '2'}},
              {bytesOf("\xE9"), 20, -1, {0xFFE9}},
              {bytesOf("U+0000A"), 20, -1, {0, 'A'}},
              {bytesOf("UU+00E9"), 20, -1, {'U', 0xE9}},
              {bytesOf("aU+00E9b"), 20, 2, {'a', 0xE9}},
              {bytesOf("ab"), 20, 1, {'a'}},
              {bytesOf("ab"), 20, 0, {'a', 'b'}}},
             {{{0xD83D, 0xDE00}, 12, ILLCHAR_STOP, bytesOf("U+D83DU+DE00")},
              {{0xD83D, 0xDE00}, 11, ILLCHAR_STOP, bytesOf("U+D83D")},
              {{'a', 0x80, 'U', '+'}, 9, ILLCHAR_REPLACE, bytesOf("aU+0080U+")},
              {{'a'}, 0, ILLCHAR_REPLACE, {}}});
    EXPECT_EQ(set.converter.getNumUnits("U+12", untilTerminator), 4UL);
    EXPECT_EQ(set.converter.getNumUnits("U+00E9x", untilTerminator), 2UL);
    EXPECT_EQ(set.converter.getNumUnits("U+00E9", 5), 5UL); // the escape is cut off
    EXPECT_EQ(set.kit.countBytes({0x41, 0xE9}), 7UL);
}

TEST(Utf32Converter, ConvertsFromAndToUtf16) {
    Set set(VYNCS_UTF32);
    Bytes const text = bytesOf(Values{0x1F600, 0x41, 0xD800, 0x110000});
    testRows(set,
             {{text, 9, -1, {0xD83D, 0xDE00, 0x41, 0xD800, 0xDC00, 0xDC00}},
              {text, 9, 2, {0xD83D, 0xDE00, 0x41}},
              {text, 1, -1, {}},
              {text, 5, -1, {0xD83D, 0xDE00, 0x41, 0xD800}},
              {text, 9, 0, {}}},
             {{{0xD800, 0x41}, 40, ILLCHAR_REPLACE, bytesOf(Values{'?', 0x41}), true},
              {{0xD800, 0x41}, 40, ILLCHAR_ESCAPE, bytesOf(Values{'U', '+', 'D', '8', '0', '0', 0x41}), true},
              {{0xD800, 0x41}, 23, ILLCHAR_ESCAPE, {}, true},
              {{0x42, 0xD800, 0x41}, 40, ILLCHAR_STOP, bytesOf(Values{0x42}), true},
              {{0xD83D, 0xDE00, 0xDC00}, 40, ILLCHAR_STOP, bytesOf(Values{0x1F600, 0xDC00})},
              {{0xD800}, 40, ILLCHAR_REPLACE, bytesOf(Values{'?'}), true},
              {{0x41, 0x42}, 7, ILLCHAR_STOP, bytesOf(Values{0x41})},
              {{0x41}, 3, ILLCHAR_STOP, {}}});
    EXPECT_EQ(set.kit.countUnits(text), 4UL);
    EXPECT_EQ(set.converter.getNumUnits(text.data(), 11), 2UL);
    EXPECT_EQ(set.kit.countBytes({0xD83D, 0xDE00, 0xD800, 0x41, 0xD800}), 12UL);
    EXPECT_EQ(set.kit.countBytes({0xD83D}, false), 0UL);
}

TEST(Utf32Converter, ConvertsToUtf8TestingTheRoomBehindEachCharacter) {
    struct Row {
        Values values; // ended by a zero value
        unsigned long room;
        std::string bytes;
        bool illegal = false, terminated = true;
    };
    Row const rows[] = {
        {{0xD800, 0}, 20, "\xEF\xBF\xBD", true},
        {{0x80000000, 0}, 20, "\xEF\xBF\xBD", true},
        {{0x7FFFFFFF, 0}, 20, "\xFD\xBF\xBF\xBF\xBF\xBF"},
        {{0x3FFFFFF, 0x1FFFFF, 0xFFFF, 0x7FF, 0x7F, 0},
         40,
         "\xFB\xBF\xBF\xBF\xBF\xF7\xBF\xBF\xBF\xEF\xBF\xBF\xDF\xBF\x7F"},
        {{0x41, 0x42, 0}, 1, "A"},
        {{0x1F600, 0}, 1, "\xF0\x9F\x98\x80", false, false}, // written past the room, and then not terminated
        {{0x41, 0}, 0, ""}};
    for (Row const& row : rows) {
        std::string dst(row.bytes.size() + 2, '\x5A');
        bool illegal = !row.illegal;
        auto* const out = reinterpret_cast<unsigned char*>(dst.data());
        EXPECT_EQ(Set(VYNCS_UTF32).converter.toUTF8(out, row.values.data(), row.room, ILLCHAR_REPLACE, &illegal),
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
    auto& converter = dynamic_cast<VynCharSetConverterUTF32&>(Set(VYNCS_UTF32).converter);
    for (auto const& [bytes, value, advance] :
         {Row{"A", 0x41, 1}, Row{"\xC0\x80", 0xFFFD, 2}, Row{"\xE2(\xA1", 0xFFFD, 1}, Row{"\xEF\xBF\xBF", 0xFFFD, 3},
          Row{"\xED\xA0\x80", 0xFFFD, 3}, Row{"\xF4\x90\x80\x80", 0x110000, 4},
          Row{"\xFD\xBF\xBF\xBF\xBF\xBF", 0x7FFFFFFF, 6}, Row{"\xF8\x88\x80\x80\x80", 0x200000, 5},
          Row{"\xF8\x87\xBF\xBF\xBF", 0xFFFD, 5}, Row{"\x80", 0xFFFD, 1}, Row{"\xFE", 0xFFFD, 1},
          Row{"\xFC\x84", 0xFFFD, 1}, Row{"\xE6\x97\xA5", 0x65E5, 3}}) {
        std::string text = bytes;
        auto* const start = reinterpret_cast<unsigned char*>(text.data());
        auto* at = start;
        EXPECT_EQ(converter.UTF32fromUTF8(&at), value) << bytes;
        EXPECT_EQ(at - start, advance) << bytes;
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
