// The bridge against a stand-in for a Java environment that has the three functions it may use and no other: a call of
// any other ends the program. The default set is that of LANG, by which the expectations are chosen.

#include <jni.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

extern "C" jboolean Java_vynxfer_VynXfer_isVynDefaultLocale(JNIEnv*, jclass);
extern "C" jstring Java_vynxfer_FileDecompressor_utf16ToLocal(JNIEnv*, jclass, jstring);

namespace {

constexpr unsigned unlimited = ~0u;
unsigned allocationsLeft = unlimited;

void* allocate(std::size_t size) {
    if (allocationsLeft == 0)
        throw std::bad_alloc();
    if (allocationsLeft != unlimited)
        --allocationsLeft;
    if (void* const memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

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
        if (!text || !self.lends)
            return nullptr;
        std::string const& bytes = static_cast<Text*>(text)->bytes;
        char* const copy = static_cast<char*>(std::malloc(bytes.size() + 1));
        std::memcpy(copy, bytes.c_str(), bytes.size() + 1);
        self.lent = copy;
        self.lentOf = text;
        return copy;
    }

    static void takeBack(JNIEnv* env, jstring text, char const* bytes) {
        auto& self = *static_cast<Environment*>(env);
        EXPECT_EQ(bytes, self.lent);
        EXPECT_EQ(text, self.lentOf);
        ++self.takenBack;
        std::free(self.lent);
        self.lent = nullptr;
    }

    static jstring make(JNIEnv* env, char const* bytes) {
        auto& self = *static_cast<Environment*>(env);
        EXPECT_EQ(self.lent, nullptr) << "bytes still held";
        allocationsLeft = unlimited;
        if (!self.makes)
            return nullptr;
        self.made = std::make_unique<Text>(bytes);
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
    char* lent = nullptr;
    jstring lentOf = nullptr;
    std::unique_ptr<Text> made;
};

enum DefaultSet { Latin1, Utf8, ShiftJis, Gb18030, setCount };

DefaultSet defaultSet() {
    static std::map<std::string, DefaultSet> const sets = {{"", Latin1},
                                                           {"ru_RU.KOI8-R", Latin1}, // no known codeset
                                                           {"en_US.UTF-8", Utf8},
                                                           {"ja_JP.SJIS", ShiftJis},
                                                           {"zh_CN.GB18030", Gb18030}};
    char const* const lang = std::getenv("LANG");
    return sets.at(lang ? lang : "");
}

/// What a character takes in the local set, and the UTF-8 characters that it gives.
struct Character {
    std::size_t localBytes;
    std::vector<std::string> utf8;
};
using Characters = std::vector<Character>;

struct Row {
    std::string name; // modified UTF-8
    Characters stored[setCount];
};

Character escape(char const* text) {
    return {6, {text}};
}

std::vector<Row> const& rows() {
    static std::vector<Row> const all = {
        {"a", {{{1, {"a"}}}, {{1, {"a"}}}, {{1, {"a"}}}, {{1, {"a"}}}}},
        {"\xC3\xA9", {{{1, {"\xC3\xA9"}}}, {{2, {"\xC3\xA9"}}}, {escape("U+00E9")}, {{2, {"\xC3\xA9"}}}}},
        {"\xE6\x97\xA5",
         {{escape("U+65E5")}, {{3, {"\xE6\x97\xA5"}}}, {{2, {"\xE6\x97\xA5"}}}, {{2, {"\xE6\x97\xA5"}}}}},
        // In ISO 8859-1 these are bytes that would pass for UTF-8.
        {"\xC3\x83\xC2\xA9",
         {{{1, {"\xC3\x83"}}, {1, {"\xC2\xA9"}}},
          {{2, {"\xC3\x83"}}, {2, {"\xC2\xA9"}}},
          {escape("U+00C3"), escape("U+00A9")},
          {{4, {"\xC3\x83"}}, {4, {"\xC2\xA9"}}}}},
        // Read back from UTF-8, four bytes count as invalid: ISO 8859-1 is what is left.
        {"\xED\xA0\xBD\xED\xB8\x80",
         {{escape("U+D83D"), escape("U+DE00")},
          {{4, {"\xC3\xB0", "\xC2\x9F", "\xC2\x98", "\xC2\x80"}}},
          {escape("U+D83D"), escape("U+DE00")},
          {{4, {"\xF0\x9F\x98\x80"}}}}},
        // UTF-8 drops the unit behind a high surrogate alone, GB18030 ends before it.
        {"\xED\xA0\x80\xED\xA0\x80",
         {{escape("U+D800"), escape("U+D800")}, {escape("U+D800")}, {escape("U+D800"), escape("U+D800")}, {}}},
        {"\xED\xB0\x80", {{escape("U+DC00")}, {{3, {"\xED\xB0\x80"}}}, {escape("U+DC00")}, {escape("U+DC00")}}},
        {std::string("\xC0\x80", 2), {{}, {}, {}, {}}}, // U+0000
        // A sequence that does not end: the text's terminator is not its third byte.
        {"\xE6\x97", {{escape("U+FFFD")}, {{3, {"\xEF\xBF\xBD"}}}, {escape("U+FFFD")}, {{4, {"\xEF\xBF\xBD"}}}}},
    };
    return all;
}

constexpr std::size_t room = 4095; // of each buffer, without the terminator

/// The stored form of `pad` letters and the characters, `count` times over.
std::string storedForm(std::size_t pad, Characters const& characters, std::size_t count) {
    std::string stored(std::min(pad, room), 'x');
    std::size_t localBytes = stored.size();
    for (std::size_t at = 0; at < count * characters.size(); ++at) {
        Character const& character = characters[at % characters.size()];
        localBytes += character.localBytes;
        if (localBytes > room)
            break;
        for (std::string const& part : character.utf8) {
            if (stored.size() + part.size() > room)
                return stored;
            stored += part;
        }
    }
    return stored;
}

TEST(JavaBridge, FallbackLocaleIsLatin1) {
    Environment environment;
    EXPECT_EQ(Java_vynxfer_VynXfer_isVynDefaultLocale(&environment, nullptr), defaultSet() == Latin1);
}

void checkName(Row const& row, std::size_t pad, std::size_t count) {
    SCOPED_TRACE(testing::PrintToString(row.name) + " x " + std::to_string(count) + " behind " + std::to_string(pad));
    std::string bytes(pad, 'x');
    for (std::size_t i = 0; i < count; ++i)
        bytes += row.name;
    Text name(bytes);
    Environment environment;
    jstring const result = environment.utf16ToLocal(&name);

    EXPECT_EQ(environment.takenBack, 1);
    std::string const expected = storedForm(pad, row.stored[defaultSet()], count);
    if (expected.empty()) {
        EXPECT_EQ(result, &name);
        return;
    }
    ASSERT_NE(result, &name);
    ASSERT_EQ(result, environment.made.get());
    EXPECT_EQ(environment.made->bytes, expected);
}

// Around the end of the buffers each character is cut at each of its bytes.
TEST(JavaBridge, NameIsStoredOrCutAtACharacter) {
    for (Row const& row : rows())
        for (std::size_t const firstPad : {0u, 4070u})
            for (std::size_t pad = firstPad; pad < firstPad + 30; ++pad)
                for (std::size_t const count : {0u, 1u, 3000u})
                    checkName(row, pad, count);
}

TEST(JavaBridge, NameThatCannotBeReadIsReturnedItself) {
    Text name("name");
    Environment environment;
    environment.lends = false;
    EXPECT_EQ(environment.utf16ToLocal(&name), &name);
    EXPECT_EQ(environment.utf16ToLocal(nullptr), nullptr);
    EXPECT_EQ(environment.asked, 2);
    EXPECT_EQ(environment.takenBack, 0);
}

TEST(JavaBridge, StringThatCannotBeMadeIsNull) {
    Text name("name");
    Environment environment;
    environment.makes = false;
    EXPECT_EQ(environment.utf16ToLocal(&name), nullptr);
    EXPECT_EQ(environment.takenBack, 1);
}

// A long name is converted by way of the heap, once in each direction.
TEST(JavaBridge, OutOfMemoryLeavesTheNameOrItsLocalBytes) {
    static char const* const localBytes[setCount] = {"\xE9", "\xC3\xA9", "U+00E9", "\xA8\xA6"};
    std::string const rest(3000, 'n');
    Text name("\xC3\xA9" + rest);
    Environment environment;
    ASSERT_NE(environment.utf16ToLocal(&name), &name); // builds the tables

    allocationsLeft = 0;
    jstring result = environment.utf16ToLocal(&name);
    allocationsLeft = unlimited;
    EXPECT_EQ(result, &name);
    allocationsLeft = 1;
    result = environment.utf16ToLocal(&name);
    ASSERT_EQ(result, environment.made.get());
    EXPECT_EQ(environment.made->bytes, localBytes[defaultSet()] + rest);
    EXPECT_EQ(environment.takenBack, 3);
}

} // namespace
