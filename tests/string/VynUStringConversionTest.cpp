// Strings as bytes, code points and units, and how long a rendering lives.

#include "tests/string/StringTestKit.h"

#include <functional>
#include <memory>

namespace {

TEST(VynUStringConversion, CopiesHoldWholeCharactersAndKeepToTheirRoom) {
    VynUString const string = makeString(u"\x3042\x3044\x3046"), none;
    std::string bytes = "#########";
    EXPECT_EQ(string.copy(bytes.data(), 0), 0u);
    EXPECT_EQ(none.copy(bytes.data(), 9), 0u);
    EXPECT_EQ(bytes, "#########"); // not even a terminator
    EXPECT_EQ(string.copy(bytes.data(), 8, VYNCS_UTF8), 6u);
    EXPECT_EQ(bytes, "\xE3\x81\x82\xE3\x81\x84\0##"s);
    Text units = u"####";
    EXPECT_EQ(string.copy(units.data(), 2), 2u);
    EXPECT_EQ(units, u"\x3042\x3044##");
    EXPECT_EQ(string.copy(units.data(), 4), 3u);
    VynPascalString pascal = {};
    EXPECT_EQ(VynUString(u'\x3044', 300).copy(&pascal, VYNCS_SHIFTJIS), 254u);
    EXPECT_EQ(pascal.length, 254u);
    EXPECT_EQ(std::string(pascal.text + 252, 3), "\x82\xA2\0"s);
    EXPECT_EQ(VynUString('a', 300).copy(&pascal), 255u);
    // A buffer of exactly the units that may be written: the text is cut to the length unit before the limit counts.
    auto const bstr = std::make_unique<unsigned short[]>(1 + 4464);
    EXPECT_EQ(VynUString(u'b', 70'000).copy(reinterpret_cast<VynBSTR*>(bstr.get()), 9999), 4464u);
    EXPECT_EQ(bstr[0], 4464);
    EXPECT_EQ(bstr[4464], 'b');
    EXPECT_EQ(string.copy(reinterpret_cast<VynBSTR*>(bstr.get()), 2), 2u);
    EXPECT_EQ(string.copy(static_cast<char*>(nullptr), 4), 0u);
    EXPECT_EQ(string.copy(static_cast<unsigned short*>(nullptr), 4), 0u);
    EXPECT_EQ(string.copy(static_cast<VynPascalString*>(nullptr)), 0u);
    EXPECT_EQ(string.copy(static_cast<VynBSTR*>(nullptr)), 0u);
}

TEST(VynUStringConversion, AccessIsChecked) {
    VynUString string = makeString(u"\xD83D\xDE00z"), erased("a"), zero = makeString(u"\0a"s);
    VynUString const& constant = string;
    EXPECT_EQ(string.numChars(), 2u);
    EXPECT_STREQ(string.c_str(VYNCS_UTF16ESC), "U+D83DU+DE00z");
    EXPECT_EQ(string.numChars(), 2u); // not of those bytes
    EXPECT_EQ(string.at_utf32(0), 0x1F600u);
    EXPECT_EQ(string.at_utf32(1), 'z');
    EXPECT_EQ(string.numChars(), 2u); // of the cached bytes
    EXPECT_EQ(string.at(2), u'z');
    EXPECT_EQ(&string.at(1), &constant.at(1));
    std::function<void()> const beyond[] = {[&] { string.at(3); }, [&] { constant.at(3); }, [&] { string.at_utf32(2); },
                                            [&] { erased.at_utf32(0), erased.erase().at_utf32(0); },
                                            [&] { zero.at_utf32(0); }};
    for (auto const& access : beyond)
        EXPECT_EQ(outcomeOf(access), "out_of_range: invalid string index given") << &access - beyond;
}

// A unit written through `at` leaves the rendering as it was: only what drops it brings the new unit to light.
template <class Change>
bool dropsRendering(Change change) {
    VynUString string("a12");
    string.c_str(VYNCS_UTF8);
    string.at(0) = 'Q';
    change(string);
    return string.c_str(VYNCS_UTF8) != "a12"s;
}

TEST(VynUStringConversion, ChangesButOneDropTheRenderingEvenWithoutEffect) {
    EXPECT_FALSE(dropsRendering([](VynUString& s) { s = 'x'; }));
    EXPECT_FALSE(dropsRendering([](VynUString& s) { s.resize(3, 'x'); }));
    EXPECT_FALSE(dropsRendering([](VynUString& s) { s.assign(s).swap(s) = *&s; }));
    EXPECT_FALSE(dropsRendering([](VynUString& s) { outcomeOf([&] { s.replace(9, 0, s, 0); }); }));
    EXPECT_TRUE(dropsRendering([](VynUString& s) { s.toLower(false); }));
    EXPECT_TRUE(dropsRendering([](VynUString& s) { s.trim(VynUString::TRIM_BOTH, VynUString::TRIM_SPACE); }));
    EXPECT_TRUE(dropsRendering([](VynUString& s) { s.replace(3, 0, s, 0, 0); }));
    EXPECT_TRUE(dropsRendering([](VynUString& s) { s.freeSecText(); }));
}

} // namespace
