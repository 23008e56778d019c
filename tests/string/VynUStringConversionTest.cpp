// Strings as bytes, code points and units, and how long a rendering lives.

#include "tests/string/StringTestKit.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>

namespace {

using namespace std::string_literals;

constexpr auto rangeError = "out_of_range: invalid string index given";

TEST(VynUStringConversion, RendersInTheSetThatIsAskedFor) {
    struct {
        std::u16string text;
        VynCharSet set;
        std::string bytes;
    } const rows[] = {
        {u"a\x00E9", VYNCS_ISO_8859_1, "a\xE9"},
        {u"a\x00E9", VYNCS_UTF8, "a\xC3\xA9"},
        {u"a\x00E9", VYNCS_UTF16, "a\0\xE9\0"s},
        {u"a\x00E9", VYNCS_UTF16ESC, "aU+00E9"},
        {u"\xD83D\xDE00z", VYNCS_UTF32, "\0\xF6\1\0z\0\0\0"s},
        {u"\xD83D\xDE00z", VYNCS_UTF8, "\xF0\x9F\x98\x80z"},
        {u"\x3042\x4E00", VYNCS_SHIFTJIS, "\x82\xA0\x88\xEA"},
        {u"\x3042", VYNCS_ISO_8859_1, "?"},
        {u"ab\0cd"s, VYNCS_UTF8, "ab"},
        {u"", VYNCS_UTF32, ""},
        {std::u16string(5000, u'\x3042'), VYNCS_EUC_JP,
         [] {
             std::string bytes;
             for (int i = 0; i < 5000; ++i)
                 bytes += "\xA4\xA2";
             return bytes;
         }()},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(&row - rows);
        VynUString string = makeString(row.text);
        EXPECT_EQ(string.length(row.set), row.bytes.size());
        std::string const terminated = row.bytes + std::string(GetNullCharSize(row.set), '\0');
        EXPECT_EQ(std::string(string.c_str(row.set), terminated.size()), terminated);
        EXPECT_EQ(string.c_str(row.set), string.c_str(row.set));

        std::string copy(row.bytes.size() + 5, '#');
        EXPECT_EQ(string.copy(copy.data(), row.bytes.size() + 1, row.set), row.bytes.size());
        EXPECT_EQ(copy.substr(0, terminated.size()), row.text.empty() ? "####" : terminated);
    }
}

TEST(VynUStringConversion, CopiesOfLimitedSizeHoldWholeCharacters) {
    VynUString const string = makeString(u"\x3042\x3044\x3046");
    char bytes[10];
    std::memset(bytes, '#', sizeof bytes);
    EXPECT_EQ(string.copy(bytes, 8, VYNCS_UTF8), 6u);
    EXPECT_EQ(std::string(bytes, 8), "\xE3\x81\x82\xE3\x81\x84\0#"s);

    unsigned short units[4] = {9, 9, 9, 9};
    EXPECT_EQ(string.copy(units, 2), 2u);
    EXPECT_EQ(units[1], 0x3044);
    EXPECT_EQ(units[2], 9); // no terminator
    EXPECT_EQ(string.copy(units, 4), 3u);
    EXPECT_EQ(string.copy(static_cast<unsigned short*>(nullptr), 4), 0u);
    EXPECT_EQ(string.copy(static_cast<char*>(nullptr), 4), 0u);
    EXPECT_EQ(string.copy(static_cast<VynPascalString*>(nullptr)), 0u);
    EXPECT_EQ(string.copy(static_cast<VynBSTR*>(nullptr)), 0u);
    EXPECT_EQ(string.copy(bytes, 0, VYNCS_UTF8), 0u);
    EXPECT_EQ(bytes[0], '\xE3');

    auto const pascal = std::make_unique<VynPascalString>();
    EXPECT_EQ(VynUString(static_cast<unsigned short>(0x3042), 100).copy(pascal.get(), VYNCS_SHIFTJIS), 200u);
    EXPECT_EQ(VynUString(static_cast<unsigned short>(0x3042), 300).copy(pascal.get(), VYNCS_SHIFTJIS), 254u);
    EXPECT_EQ(pascal->length, 254);
    EXPECT_EQ(pascal->text[253], '\xA0');
    EXPECT_EQ(pascal->text[254], 0);
    EXPECT_EQ(VynUString().copy(pascal.get()), 0u);
    EXPECT_EQ(pascal->length, 0);
}

TEST(VynUStringConversion, CopiesToBstrAreCutToItsLengthUnitFirst) {
    struct {
        unsigned long length, max, copied;
    } const rows[] = {{5, 3, 3},     {5, VynUString::npos, 5}, {5, 0, 0},          {0, 9, 0}, {65535, 65535, 65535},
                      {65536, 9, 0}, {70000, 100000, 4464},    {70000, 4000, 4000}};
    for (auto const& row : rows) {
        // A buffer of exactly the units that may be written.
        auto const buffer = std::make_unique<unsigned short[]>(row.copied + 1);
        auto* const bstr = reinterpret_cast<VynBSTR*>(buffer.get());
        EXPECT_EQ(VynUString(static_cast<unsigned short>('b'), row.length).copy(bstr, row.max), row.copied);
        EXPECT_EQ(buffer[0], row.copied);
        EXPECT_TRUE(row.copied == 0 || buffer[row.copied] == 'b');
    }
}

TEST(VynUStringConversion, AccessIsChecked) {
    VynUString string = makeString(u"\xD83D\xDE00z"), empty;
    VynUString const& constant = string;
    EXPECT_EQ(string.numChars(), 2u);
    EXPECT_EQ(string.at(2), u'z');
    EXPECT_EQ(&string.at(1), &constant.at(1));
    EXPECT_EQ(string.at_utf32(0), 0x1F600u);
    EXPECT_EQ(string.at_utf32(1), u'z');
    EXPECT_EQ(string.numChars(), 2u);
    EXPECT_EQ(outcomeOf([&] { string.at(3); }), rangeError);
    EXPECT_EQ(outcomeOf([&] { constant.at(3); }), rangeError);
    EXPECT_EQ(outcomeOf([&] { string.at_utf32(2); }), rangeError);
    EXPECT_EQ(outcomeOf([&] { empty.at_utf32(0); }), rangeError);
    EXPECT_EQ(outcomeOf([&] { empty.at(0); }), rangeError);
    EXPECT_EQ(outcomeOf([&] { makeString(u"\0a"s).at_utf32(0); }), rangeError); // renders to nothing
    EXPECT_EQ(empty.numChars(), 0u);
}

// A unit written through `at` leaves the rendering as it was: only what drops it brings the new unit to light.
TEST(VynUStringConversion, EveryChangeButOneDropsTheRendering) {
    VynUString const tail("tail");
    struct {
        char const* name;
        std::function<void(VynUString&)> run;
        bool drops = true;
    } const rows[] = {
        {"operator=(char)", [](VynUString& s) { s = 'x'; }, false},
        {"resize to the same length", [](VynUString& s) { s.resize(3, 'x'); }, false},
        {"const members", [](VynUString& s) { s.find(s), s.numChars(), s.length(VYNCS_UTF8), s.left(1), s + s; },
         false},
        {"toUpper without effect", [](VynUString& s) { s.toUpper(false); }, false},
        {"failing replace", [&](VynUString& s) { outcomeOf([&] { s.replace(9, 0, tail, 0); }); }, false},
        {"assign to itself", [](VynUString& s) { s.assign(s); }, false},
        {"toLower", [](VynUString& s) { s.toLower(false); }},
        {"toLower of ASCII", [](VynUString& s) { s.toLower(true); }},
        {"trim without effect", [](VynUString& s) { s.trim(VynUString::TRIM_BOTH, VynUString::TRIM_SPACE); }},
        {"resize down", [](VynUString& s) { s.resize(2, 'x'); }},
        {"resize up", [](VynUString& s) { s.resize(4, 'x'); }},
        {"resize by units", [](VynUString& s) { s.resize(4, static_cast<unsigned short>('x')); }},
        {"replace", [&](VynUString& s) { s.replace(3, 0, tail, 0); }},
        {"replace without effect", [&](VynUString& s) { s.replace(3, 0, tail, 0, 0); }},
        {"replace with growth", [](VynUString& s) { s.replace(3, 0, VynUString('x', 300), 0); }},
        {"erase without effect", [](VynUString& s) { s.erase(3, 0); }},
        {"operator=(unsigned short)", [](VynUString& s) { s = static_cast<unsigned short>('x'); }},
        {"operator=(char const*)", [](VynUString& s) { s = "xyz"; }},
        {"operator=(unsigned short const*)", [](VynUString& s) { s = s.data(); }},
        {"assign", [](VynUString& s) { s.assign(VynUString(s)); }},
        {"move", [](VynUString& s) { s = VynUString(s); }},
        {"swap", [](VynUString& s) { VynUString(s).swap(s); }},
        {"freeSecText", [](VynUString& s) { s.freeSecText(); }},
    };
    for (auto const& row : rows) {
        VynUString string("a12");
        string.c_str(VYNCS_UTF8);
        string.at(0) = 'Q';
        row.run(string);
        EXPECT_STREQ(string.c_str(VYNCS_UTF8), row.drops ? VynUString(string).c_str(VYNCS_UTF8) : "a12") << row.name;
    }
}

} // namespace
