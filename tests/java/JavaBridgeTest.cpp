// The bridge against a stand-in for a Java environment that has the three functions it may use and no other: a call of
// any other ends the program. The default set is that of LANG, by which the expectations are chosen.

#include "tests/support/FailingAllocation.h"

#include <vynulib/VynCharSet.h>

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

    /// Whether this call does what it is called for. If not, an exception is pending from then on.
    bool succeeds() {
        EXPECT_FALSE(raised) << "only a release is allowed then";
        return !(raised = ++calls == failingCall);
    }

    // Each loan is a block of its own, so that a sanitizer sees what lies beside it.
    static char const* lend(JNIEnv* env, jstring text, jboolean*) {
        auto& self = *static_cast<Environment*>(env);
        if (self.succeeds() && text)
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
        self.made = self.succeeds() ? std::make_unique<Text>(bytes) : nullptr;
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

    int calls = 0, failingCall = 0, takenBack = 0;
    bool raised = false;
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

// Names in modified UTF-8: the halves of a pair, alone or together, a zero, and a sequence that does not end, after which
// the terminator must not pass for its third byte. Around the end of the buffers each is cut at each of its bytes.
TEST(JavaBridge, NameIsStoredOrCutAtACharacter) {
    constexpr std::size_t room = 4095; // of each buffer, without the terminator
    std::vector<char> local(1 << 16);
    std::vector<unsigned char> utf8(1 << 16);
    for (std::string const part : {"a", "é", "日", "Ã©", "\xED\xA0\xBD\xED\xB8\x80", "\xED\xA0\x80\xED\xA0\x80",
                                   "\xED\xB0\x80", "\xC0\x80", "\xE6\x97"})
        for (std::size_t pad = 0; pad < room + 5; pad == 30 ? pad = 4070 : ++pad)
            for (std::size_t const count : {0u, 1u, 3000u}) {
                SCOPED_TRACE(testing::PrintToString(part) + " x " + std::to_string(count) + " after " +
                             std::to_string(pad));
                Text name(std::string(pad, 'x'));
                for (std::size_t i = 0; i < count; ++i)
                    name.bytes += part;
                auto const* const bytes = reinterpret_cast<unsigned char const*>(name.bytes.c_str());
                unsigned long const localLength = UTF8ToLocalPath(local.data(), bytes, 1 << 16);
                std::string const whole(
                    utf8.data(), utf8.data() + LocalToUTF8(utf8.data(), local.data(), 1 << 16, VYNCS_OS_DEFAULT));

                Environment environment;
                jstring const result = environment.utf16ToLocal(&name);
                EXPECT_EQ(environment.takenBack, 1);
                ASSERT_EQ(result, localLength == 0 ? static_cast<jstring>(&name) : environment.made.get());
                if (localLength == 0)
                    continue;
                std::string const& stored = environment.made->bytes;
                EXPECT_EQ(stored, whole.substr(0, stored.size()));
                EXPECT_LE(stored.size(), room);
                EXPECT_EQ(stored == whole, std::max<std::size_t>(localLength, whole.size()) <= room);
                if (stored.size() < whole.size()) {
                    EXPECT_NE(whole[stored.size()] & 0xC0, 0x80) << "cut within a character";
                }
            }
}

TEST(JavaBridge, AnswersWithoutStringsOrMemory) {
    Environment environment;
    EXPECT_EQ(Java_vynxfer_VynXfer_isVynDefaultLocale(&environment, nullptr), defaultSet() == Latin1);

    Text name("é" + std::string(3000, 'n'));
    environment.utf16ToLocal(&name); // builds the tables
    std::string const stored = environment.made->bytes;
    allocationsLeft = 0;
    jstring const result = environment.utf16ToLocal(&name);
    allocationsLeft = unlimitedAllocations;
    EXPECT_EQ(result, environment.made.get());
    EXPECT_EQ(environment.made->bytes, stored);

    EXPECT_EQ(environment.utf16ToLocal(nullptr), nullptr);
}

TEST(JavaBridge, EndsAtTheCallThatFails) {
    for (std::size_t const length : {0U, 1U, 4095U, 65535U}) {
        Text name(std::string(length, 'n'));
        for (int failingCall = 1;; ++failingCall) {
            Environment environment;
            environment.failingCall = failingCall;
            jstring const result = environment.utf16ToLocal(&name);
            if (!environment.raised) {
                EXPECT_EQ(environment.calls, length == 0 ? 1 : 2);
                break;
            }
            EXPECT_EQ(environment.calls, failingCall);
            EXPECT_EQ(environment.takenBack, failingCall - 1) << "what was lent";
            EXPECT_EQ(result, failingCall == 1 ? &name : nullptr);
        }
    }
}

} // namespace
