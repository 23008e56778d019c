// Strict conversion from the Unicode sets beside ICU's: what comes before the first loss, where that stands and how long
// it is.

#include "tests/support/Random.h"

#include <vynulib/Transcoding.h>

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <memory>

namespace {

struct FirstLoss {
    std::u16string before;
    std::size_t at, length; // length 0: no loss

    bool operator==(FirstLoss const&) const = default;
};

struct UnicodeSet {
    VynCharSet cs;
    char const* icuName;
    std::vector<std::string> elements; ///< Of each kind that matters to what is well-formed.
    std::size_t exhaustiveLength;      ///< Elements of the sequences that are all compared.
};

std::string littleEndian(unsigned value, unsigned bytes) {
    std::string text;
    for (; bytes != 0; --bytes, value >>= 8)
        text += static_cast<char>(value);
    return text;
}

std::vector<UnicodeSet> unicodeSets() {
    UnicodeSet utf8{VYNCS_UTF8, "UTF-8", {}, 4}, utf16{VYNCS_UTF16, "UTF-16LE", {"B"}, 4},
        utf32{VYNCS_UTF32, "UTF-32LE", {"B"}, 3};
    for (unsigned const byte : {0x00U, 0x41U, 0x80U, 0x8FU, 0x90U, 0x9FU, 0xA0U, 0xBFU, 0xC0U, 0xC1U,
                                0xC2U, 0xE0U, 0xE1U, 0xEDU, 0xEFU, 0xF0U, 0xF1U, 0xF4U, 0xF5U, 0xFFU})
        utf8.elements.push_back(littleEndian(byte, 1));
    for (unsigned const unit : {0x00U, 0x41U, 0xD7FFU, 0xD800U, 0xDBFFU, 0xDC00U, 0xDFFFU, 0xE000U, 0xFFFFU})
        utf16.elements.push_back(littleEndian(unit, 2));
    for (unsigned const value :
         {0x00U, 0x41U, 0xD7FFU, 0xD800U, 0xDFFFU, 0xE000U, 0xFFFFU, 0x10000U, 0x10FFFFU, 0x110000U, 0xFFFFFFFFU})
        utf32.elements.push_back(littleEndian(value, 4));
    return {utf8, utf16, utf32};
}

class StrictDifferential : public testing::TestWithParam<UnicodeSet> {
protected:
    FirstLoss icu(std::string const& bytes) {
        UErrorCode error = U_ZERO_ERROR;
        ucnv_resetToUnicode(m_icu.get());
        char16_t units[64];
        char16_t* dst = units;
        char const* src = bytes.data();
        ucnv_toUnicode(m_icu.get(), &dst, units + 64, &src, bytes.data() + bytes.size(), nullptr, true, &error);
        FirstLoss result{{units, dst}, bytes.size(), 0};
        if (U_FAILURE(error)) {
            char invalid[8];
            std::int8_t length = sizeof invalid;
            UErrorCode ignored = U_ZERO_ERROR;
            ucnv_getInvalidChars(m_icu.get(), invalid, &length, &ignored);
            result.length = static_cast<unsigned char>(length);
            result.at = static_cast<std::size_t>(src - bytes.data()) - result.length;
            if (GetParam().cs == VYNCS_UTF16)
                result.length = std::min<std::size_t>(result.length, 2); // ICU takes an odd last byte along
        }
        return result;
    }

    FirstLoss ours(std::string const& bytes) const {
        char16_t units[64];
        vynulib::Progress const done = vynulib::decode(GetParam().cs, bytes, units, 64, true);
        return {{units, done.written}, done.read, done.length};
    }

    void expectSame(std::string const& bytes) {
        FirstLoss const expected = icu(bytes), found = ours(bytes);
        ASSERT_EQ(found.at, expected.at) << testing::PrintToString(bytes);
        ASSERT_EQ(found.length, expected.length) << testing::PrintToString(bytes);
        ASSERT_EQ(found.before, expected.before) << testing::PrintToString(bytes);
    }

    void expectSameForAll(std::string const& prefix, std::size_t more) {
        expectSame(prefix);
        for (std::size_t i = 0; more != 0 && i < GetParam().elements.size() && !HasFatalFailure(); ++i)
            expectSameForAll(prefix + GetParam().elements[i], more - 1);
    }

private:
    std::unique_ptr<UConverter, decltype(&ucnv_close)> m_icu = [] {
        UErrorCode error = U_ZERO_ERROR;
        UConverter* const converter = ucnv_open(GetParam().icuName, &error);
        ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
        return std::unique_ptr<UConverter, decltype(&ucnv_close)>(converter, ucnv_close);
    }();
};

TEST_P(StrictDifferential, FindsTheSameFirstLossInShortSequences) {
    expectSameForAll("", GetParam().exhaustiveLength);
}

TEST_P(StrictDifferential, FindsTheSameFirstLossInRandomText) {
    TestRandom random;
    SCOPED_TRACE(random.seed());
    for (int round = 0; round < 20000 && !HasFatalFailure(); ++round) {
        std::string bytes;
        auto const fill = [&] { // with what is converted in blocks
            char const* const filler = std::array{"", "a", "\xC3\xA9", "\xE6\x97\xA5"}[random.below(4)];
            for (unsigned i = random.below(12); i != 0; --i)
                bytes += filler;
        };
        fill();
        for (unsigned i = random.below(8); i != 0; --i)
            bytes += GetParam().elements[random.below(GetParam().elements.size())];
        fill();
        if (round % 4 == 0)
            for (char& byte : bytes)
                byte = static_cast<char>(random.below(256));
        expectSame(bytes);
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, StrictDifferential, testing::ValuesIn(unicodeSets()),
                         [](auto const& test) { return std::to_string(test.param.cs); });

} // namespace
