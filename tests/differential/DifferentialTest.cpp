// Every set against ICU, code by code in both directions: whatever differs has to be a known difference.

#include "tests/differential/KnownDifferences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace {

using Sequence = std::vector<CodeRange>; // the values of each byte
using testing::PrintToString;

// All that can be one code of the set, from its first to its last byte; UTF-16 and UTF-32 in little-endian order.
std::vector<Sequence> sequencesOf(VynCharSet set) {
    CodeRange const all{0x00, 0xFF}, nonZero{0x01, 0xFF}, continuation{0x80, 0xBF}, lead{0x81, 0xFE}, digit{0x30, 0x39};
    std::map<VynCharSet, std::vector<Sequence>> const ofOneForm = {
        {VYNCS_UTF16, {{all, all}, {all, {0xD8, 0xDB}, all, {0xDC, 0xDF}}}},
        {VYNCS_UTF32, {{all, all, {0x00, 0x11}, {0x00}}}},
    };
    if (auto const found = ofOneForm.find(set); found != ofOneForm.end())
        return found->second;
    std::vector<Sequence> sequences{{nonZero}};
    if (VynCharSetConverter::getConverter(set)->getMaxUnitSize() > 1)
        sequences.push_back({nonZero, nonZero});
    if (set == VYNCS_UTF8)
        sequences.insert(sequences.end(),
                         {{{0xE0, 0xEF}, nonZero, nonZero}, {{0xF0, 0xF7}, continuation, continuation, continuation}});
    if (set == VYNCS_EUC_JP)
        sequences.push_back({{0x8F}, nonZero, nonZero});
    if (set == VYNCS_GB18030)
        sequences.push_back({lead, digit, lead, digit});
    return sequences;
}

// Every unit of the BMP, lone surrogates included, planes 1 and 2, and of the others each 256th character and the end.
char32_t nextCharacter(char32_t c) {
    return c < 0x30000 || (c & 0xFFFF) >= 0xFF00 ? c + 1 : c + 0x100;
}

std::u16string utf16Of(char32_t c) {
    if (c < 0x10000)
        return {static_cast<char16_t>(c)};
    return {static_cast<char16_t>(0xD7C0 + (c >> 10)), static_cast<char16_t>(0xDC00 + (c & 0x3FF))};
}

class Comparison {
public:
    Comparison(VynCharSet set, Codec const& icu) : m_set(set), m_library(libraryCodec(set)), m_icu(icu) {
        for (KnownDifference const& known : knownDifferences)
            if (std::ranges::find(known.sets, set) != known.sets.end())
                m_uses[&known] = 0;
    }

    void run() {
        for (Sequence const& sequence : sequencesOf(m_set))
            decodeFrom(sequence, {});
        for (char32_t c = 1; c <= 0x10FFFF; c = nextCharacter(c)) {
            std::u16string const text = utf16Of(c);
            Code const ours = m_library.encode(text), theirs = m_icu.encode(text);
            compared(ours == theirs || isEncodingExplained(text, ours, theirs), text, ours, theirs);
        }
        EXPECT_EQ(m_unexplained, 0u);
        for (auto const& [known, uses] : m_uses)
            EXPECT_GT(uses, 0u) << "occurs no longer: " << known->reason;
    }

private:
    void decodeFrom(Sequence const& sequence, std::string const& code) {
        // What follows a whole character is another one.
        bool const hasLeadBytes = VynCharSetConverter::getConverter(m_set)->getMinUnitSize() == 1;
        if (code.size() == 1 && sequence.size() > 1 && hasLeadBytes && (m_library.decode(code) || m_icu.decode(code)))
            return;
        if (code.size() < sequence.size()) {
            auto const [first, last] = sequence[code.size()];
            for (unsigned byte = first; byte <= last; ++byte)
                decodeFrom(sequence, code + static_cast<char>(byte));
        } else if (codeNumber(code) != 0) { // not the terminator
            Text const ours = m_library.decode(code), theirs = m_icu.decode(code);
            compared(isExplained(code, ours, theirs), code, ours, theirs);
        }
    }

    bool isExplained(std::string const& code, Text const& ours, Text const& theirs) {
        if (ours == theirs)
            return true;
        Difference const difference{code, ours, theirs, m_library, m_icu};
        auto const explains = [&, number = codeNumber(code)](auto const& use) {
            auto const& [known, uses] = use;
            auto const includes = [&](CodeRange const& range) { return range.first <= number && number <= range.last; };
            return (known->codes.empty() || std::ranges::any_of(known->codes, includes)) && known->holds(difference);
        };
        auto const explanation = std::ranges::find_if(m_uses, explains);
        if (explanation == m_uses.end())
            return false;
        ++explanation->second;
        return true;
    }

    // Each of both codes has to mean the character on both sides or differ in a known way; and one has to differ.
    bool isEncodingExplained(std::u16string const& text, Code const& ours, Code const& theirs) {
        Text const theirsOfOurs = ours ? m_icu.decode(*ours) : text;
        Text const oursOfTheirs = theirs ? m_library.decode(*theirs) : text;
        return (theirsOfOurs != text || oursOfTheirs != text) && (!ours || isExplained(*ours, text, theirsOfOurs)) &&
               (!theirs || isExplained(*theirs, oursOfTheirs, text));
    }

    template <class From, class To>
    void compared(bool isKnown, From const& from, To const& ours, To const& theirs) {
        constexpr unsigned long reportsShown = 50;
        if (!isKnown && ++m_unexplained <= reportsShown)
            ADD_FAILURE() << PrintToString(from) << " ours: " << PrintToString(ours)
                          << " theirs: " << PrintToString(theirs);
    }

    VynCharSet m_set;
    Codec m_library;
    Codec const& m_icu;
    std::map<KnownDifference const*, unsigned long> m_uses; // by place in the list, the first that holds counts
    unsigned long m_unexplained = 0;
};

class DifferentialTest : public testing::TestWithParam<ComparedSet> {};

TEST_P(DifferentialTest, DiffersInKnownWaysOnly) {
    auto const& [set, icuName] = GetParam();
    if (!icuName)
        GTEST_SKIP() << "ICU has no such set";
    auto const icu = icuCodec(icuName);
    if (!icu)
        GTEST_SKIP() << "no converter " << icuName;
    Comparison(set, *icu).run();
}

INSTANTIATE_TEST_SUITE_P(Sets, DifferentialTest, testing::ValuesIn(comparedSets),
                         [](auto const& test) { return VynCharSetToString(test.param.set); });

TEST(DifferentialSetsTest, EveryServedSetIsListedOnce) {
    std::set<VynCharSetConverter*> listed;
    for (ComparedSet const& row : comparedSets)
        EXPECT_TRUE(listed.insert(VynCharSetConverter::getConverter(row.set)).second) << row.set;
    EXPECT_EQ(listed.size(), 41u);
}

} // namespace
