// The bridge against a stand-in for a Java environment that has the three functions it may use and no other: a call of
// any other ends the program. The default set is that of LANG, by which the expectations are chosen.

#include "tests/support/FailingAllocation.h"

#include <jni.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

extern "C" jboolean Java_vynxfer_VynXfer_isVynDefaultLocale(JNIEnv*, jclass);
extern "C" jstring Java_vynxfer_FileDecompressor_utf16ToLocal(JNIEnv*, jclass, jstring);

namespace {

struct Text : _jstring {
    explicit Text(std::string modifiedUtf8) : bytes(std::move(modifiedUtf8)) {}
    std::string bytes;
};

struct Environment : JNIEnv_ {
    Environment() {
        static JNINativeInterface_ const table = threeFunctions();
        functions = &table;
    }

    // Each loan is a block of its own, so that a sanitizer sees what lies beside it.
    static char const* lend(JNIEnv* env, jstring text, jboolean*) {
        auto& self = *static_cast<Environment*>(env);
        ++self.asked;
        if (text && self.lends)
            self.lent = {text, strdup(static_cast<Text*>(text)->bytes.c_str())};
        return self.lent.second;
    }

    static void takeBack(JNIEnv* env, jstring text, char const* bytes) {
        auto& self = *static_cast<Environment*>(env);
        EXPECT_EQ(text, self.lent.first);
        EXPECT_EQ(bytes, self.lent.second);
        ++self.takenBack;
        std::free(std::exchange(self.lent, {}).second);
    }

    static jstring make(JNIEnv* env, char const* bytes) {
        auto& self = *static_cast<Environment*>(env);
        EXPECT_EQ(self.lent.second, nullptr) << "bytes still held";
        allocationsLeft = unlimitedAllocations;
        self.made = self.makes ? std::make_unique<Text>(bytes) : nullptr;
        return self.made.get();
    }

    static JNINativeInterface_ threeFunctions() {
        JNINativeInterface_ table{};
        table.GetStringUTFChars = lend;
        table.ReleaseStringUTFChars = takeBack;
        table.NewStringUTF = make;
        return table;
    }

    jstring utf16ToLocal(jstring name) { return Java_vynxfer_FileDecompressor_utf16ToLocal(this, nullptr, name); }

    bool lends = true, makes = true;
    int asked = 0, takenBack = 0;
    std::pair<jstring, char*> lent;
    std::unique_ptr<Text> made;
};

enum DefaultSet { Latin1, Utf8, ShiftJis, Gb18030, setCount };

DefaultSet defaultSet() {
    static std::map<std::string, DefaultSet> const sets = {
        {"en_US.UTF-8", Utf8}, {"ja_JP.SJIS", ShiftJis}, {"zh_CN.GB18030", Gb18030}};
    char const* const lang = std::getenv("LANG");
    auto const found = sets.find(lang ? lang : "");
    return found != sets.end() ? found->second : Latin1; // no locale, or no known codeset
}

/// Characters of UTF-8 that a name is stored as, each with the bytes before it that it adds to the local form.
using Characters = std::vector<std::pair<std::size_t, std::string>>;

struct Row {
    std::string name; // modified UTF-8
    Characters stored[setCount];
};

std::vector<Row> const& rows() {
    Characters const highs = {{6, "U+D800"}, {6, "U+D800"}}, pair = {{6, "U+D83D"}, {6, "U+DE00"}};
    static std::vector<Row> const all = {
        {"a", {{{1, "a"}}, {{1, "a"}}, {{1, "a"}}, {{1, "a"}}}},
        {"é", {{{1, "é"}}, {{2, "é"}}, {{6, "U+00E9"}}, {{2, "é"}}}},
        {"日", {{{6, "U+65E5"}}, {{3, "日"}}, {{2, "日"}}, {{2, "日"}}}},
        // In ISO 8859-1 these are bytes that would pass for UTF-8.
        {"Ã©", {{{1, "Ã"}, {1, "©"}}, {{2, "Ã"}, {2, "©"}}, {{6, "U+00C3"}, {6, "U+00A9"}}, {{4, "Ã"}, {4, "©"}}}},
        // Read back from UTF-8, four bytes count as invalid: ISO 8859-1 is what is left.
        {"\xED\xA0\xBD\xED\xB8\x80",
         {pair, {{4, "ð"}, {0, "\xC2\x9F"}, {0, "\xC2\x98"}, {0, "\xC2\x80"}}, pair, {{4, "\xF0\x9F\x98\x80"}}}},
        // UTF-8 drops the unit after a high surrogate alone, GB18030 ends before it.
        {"\xED\xA0\x80\xED\xA0\x80", {highs, {{6, "U+D800"}}, highs, {}}},
        {"\xED\xB0\x80", {{{6, "U+DC00"}}, {{3, "\xED\xB0\x80"}}, {{6, "U+DC00"}}, {{6, "U+DC00"}}}},
        {"\xC0\x80", {{}, {}, {}, {}}}, // U+0000
        // A sequence that does not end: the text's terminator is not its third byte.
        {"\xE6\x97", {{{6, "U+FFFD"}}, {{3, "\uFFFD"}}, {{6, "U+FFFD"}}, {{4, "\uFFFD"}}}},
    };
    return all;
}

/// The stored form of `pad` letters and the characters, `count` times over, as far as it fits.
std::string storedForm(std::size_t pad, Characters const& characters, std::size_t count) {
    constexpr std::size_t room = 4095; // of each buffer, without the terminator
    std::string stored(std::min(pad, room), 'x');
    std::size_t localBytes = stored.size();
    for (std::size_t at = 0; at < count * characters.size(); ++at) {
        auto const& [bytes, character] = characters[at % characters.size()];
        localBytes += bytes;
        if (localBytes > room || stored.size() + character.size() > room)
            break;
        stored += character;
    }
    return stored;
}

void checkName(Row const& row, std::size_t pad, std::size_t count) {
    SCOPED_TRACE(testing::PrintToString(row.name) + " x " + std::to_string(count) + " after " + std::to_string(pad));
    Text name(std::string(pad, 'x'));
    for (std::size_t i = 0; i < count; ++i)
        name.bytes += row.name;
    Environment environment;
    jstring const result = environment.utf16ToLocal(&name);
    EXPECT_EQ(environment.takenBack, 1);
    std::string const expected = storedForm(pad, row.stored[defaultSet()], count);
    ASSERT_EQ(result, expected.empty() ? static_cast<jstring>(&name) : environment.made.get());
    if (!expected.empty()) {
        EXPECT_EQ(environment.made->bytes, expected);
    }
}

// Around the end of the buffers each character is cut at each of its bytes.
TEST(JavaBridge, NameIsStoredOrCutAtACharacter) {
    for (Row const& row : rows())
        for (std::size_t const firstPad : {0u, 4070u})
            for (std::size_t pad = firstPad; pad < firstPad + 30; ++pad)
                for (std::size_t const count : {0u, 1u, 3000u})
                    checkName(row, pad, count);
}

TEST(JavaBridge, AnswersWithoutStringsOrMemory) {
    Environment environment;
    EXPECT_EQ(Java_vynxfer_VynXfer_isVynDefaultLocale(&environment, nullptr), defaultSet() == Latin1);

    // Without memory a long name stays as it is, and with some for the first of its two conversions its local bytes.
    static char const* const localBytes[setCount] = {"\xE9", "é", "U+00E9", "\xA8\xA6"};
    std::string const rest(3000, 'n');
    Text name("é" + rest);
    ASSERT_NE(environment.utf16ToLocal(&name), &name); // builds the tables
    allocationsLeft = 0;
    jstring result = environment.utf16ToLocal(&name);
    allocationsLeft = unlimitedAllocations;
    EXPECT_EQ(result, &name);
    allocationsLeft = 1;
    result = environment.utf16ToLocal(&name);
    ASSERT_EQ(result, environment.made.get());
    EXPECT_EQ(environment.made->bytes, localBytes[defaultSet()] + rest);

    environment.makes = false;
    EXPECT_EQ(environment.utf16ToLocal(&name), nullptr);
    EXPECT_EQ(environment.takenBack, 4);
    environment.lends = false;
    EXPECT_EQ(environment.utf16ToLocal(&name), &name);
    EXPECT_EQ(environment.utf16ToLocal(nullptr), nullptr);
    EXPECT_EQ(environment.asked, 6);
    EXPECT_EQ(environment.takenBack, 4);
}

} // namespace
