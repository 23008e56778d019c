// Every set against ICU and glibc, code by code in both directions: whatever differs has to be a known difference.

#include "tests/differential/KnownDifferences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>

namespace {

struct ByteRange {
    unsigned first;
    unsigned last;
};
using Sequence = std::vector<ByteRange>;

// All that can be one code of the set, from its first to its last byte; UTF-16 and UTF-32 in little-endian order.
std::vector<Sequence> sequencesOf(VynCharSet set) {
    ByteRange const all{0x00, 0xFF};
    ByteRange const nonZero{0x01, 0xFF};
    ByteRange const continuation{0x80, 0xBF};
    ByteRange const digit{0x30, 0x39};
    switch (set) {
    case VYNCS_UTF16:
        return {{all, all}, {all, {0xD8, 0xDB}, all, {0xDC, 0xDF}}};
    case VYNCS_UTF32:
        return {{all, all, {0x00, 0x11}, {0x00, 0x00}}};
    case VYNCS_UTF8:
        return {{nonZero},
                {nonZero, nonZero},
                {{0xE0, 0xEF}, nonZero, nonZero},
                {{0xF0, 0xF7}, continuation, continuation, continuation}};
    case VYNCS_EUC_JP:
        return {{nonZero}, {nonZero, nonZero}, {{0x8F, 0x8F}, nonZero, nonZero}};
    case VYNCS_GB18030:
        return {{nonZero}, {nonZero, nonZero}, {{0x81, 0xFE}, digit, {0x81, 0xFE}, digit}};
    default:
        if (VynCharSetConverter::getConverter(set)->getMaxUnitSize() == 1)
            return {{nonZero}};
        return {{nonZero}, {nonZero, nonZero}};
    }
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

template <typename String>
std::string hexadecimal(std::optional<String> const& string) {
    if (!string)
        return "nothing";
    std::ostringstream out;
    out << std::hex << std::uppercase << std::setfill('0');
    for (auto const element : *string)
        out << std::setw(2 * sizeof element) << (+element & ((1 << 8 * sizeof element) - 1)) << ' ';
    return out.str();
}

class Comparison {
public:
    Comparison(VynCharSet set, Peers peerKind, Codec const& peer)
        : m_set(set), m_library(libraryCodec(set)), m_peer(peer) {
        for (KnownDifference const& known : knownDifferences)
            if ((known.peers & peerKind) != 0 && std::ranges::find(known.sets, set) != known.sets.end())
                m_uses[&known] = 0;
    }

    void decodeAll() {
        bool const hasLeadBytes = VynCharSetConverter::getConverter(m_set)->getMinUnitSize() == 1;
        for (Sequence const& sequence : sequencesOf(m_set)) {
            std::string code(sequence.size(), '\0');
            for (unsigned lead = sequence[0].first; lead <= sequence[0].last; ++lead) {
                code[0] = static_cast<char>(lead);
                // What follows a whole character is another one.
                bool const isWhole =
                    hasLeadBytes && (m_library.decode(code.substr(0, 1)) || m_peer.decode(code.substr(0, 1)));
                if (sequence.size() == 1 || !isWhole)
                    decodeFrom(sequence, code, 1);
            }
        }
    }

    void encodeAll() {
        for (char32_t c = 1; c <= 0x10FFFF; c = nextCharacter(c)) {
            std::u16string const text = utf16Of(c);
            Code const ours = m_library.encode(text);
            Code const theirs = m_peer.encode(text);
            ++m_compared;
            if (ours != theirs && !isEncodingExplained(text, ours, theirs))
                report("encode", hexadecimal(Text(text)), hexadecimal(ours), hexadecimal(theirs));
        }
    }

    void checkThatKnownDifferencesOccur() const {
        for (auto const& [known, uses] : m_uses) {
            std::cout << "  " << uses << " known: " << known->reason << '\n';
            EXPECT_GT(uses, 0u) << "occurs no longer: " << known->reason;
        }
    }

    unsigned long compared() const { return m_compared; }
    unsigned long unexplained() const { return m_unexplained; }

private:
    void decodeFrom(Sequence const& sequence, std::string& code, std::size_t position) {
        if (position < sequence.size()) {
            for (unsigned byte = sequence[position].first; byte <= sequence[position].last; ++byte) {
                code[position] = static_cast<char>(byte);
                decodeFrom(sequence, code, position + 1);
            }
            return;
        }
        if (codeNumber(code) == 0) // the terminator
            return;
        Text const ours = m_library.decode(code);
        Text const theirs = m_peer.decode(code);
        ++m_compared;
        if (!isExplained(code, ours, theirs))
            report("decode", hexadecimal(Code(code)), hexadecimal(ours), hexadecimal(theirs));
    }

    bool isExplained(std::string const& code, Text const& ours, Text const& theirs) {
        if (ours == theirs)
            return true;
        Difference const difference{code, ours, theirs, m_library, m_peer};
        for (auto& [known, uses] : m_uses) {
            if (known->codes.contain(codeNumber(code)) && known->holds(difference)) {
                ++uses;
                return true;
            }
        }
        return false;
    }

    // Each of both codes has to mean the character on both sides or differ in a known way; and one has to differ.
    bool isEncodingExplained(std::u16string const& text, Code const& ours, Code const& theirs) {
        Text const theirsOfOurs = ours ? m_peer.decode(*ours) : text;
        Text const oursOfTheirs = theirs ? m_library.decode(*theirs) : text;
        return (theirsOfOurs != text || oursOfTheirs != text) && (!ours || isExplained(*ours, text, theirsOfOurs)) &&
               (!theirs || isExplained(*theirs, oursOfTheirs, text));
    }

    void report(char const* direction, std::string const& from, std::string const& ours, std::string const& theirs) {
        constexpr unsigned long reportsShown = 50;
        if (++m_unexplained <= reportsShown)
            ADD_FAILURE() << VynCharSetToString(m_set) << ' ' << direction << ' ' << from << " ours: " << ours
                          << " theirs: " << theirs;
    }

    VynCharSet m_set;
    Codec m_library;
    Codec const& m_peer;
    std::map<KnownDifference const*, unsigned long> m_uses; // by place in the list, the first that holds counts
    unsigned long m_compared = 0;
    unsigned long m_unexplained = 0;
};

struct SetAndPeer {
    VynCharSet set;
    Peers peer;
    char const* peerName;
};

void PrintTo(SetAndPeer const& value, std::ostream* out) {
    *out << VynCharSetToString(value.set) << (value.peer == icu ? "_icu" : "_glibc");
}

std::vector<SetAndPeer> comparisons() {
    std::vector<SetAndPeer> all;
    for (ComparedSet const& row : comparedSets) {
        if (row.icuName)
            all.push_back({row.set, icu, row.icuName});
        if (row.glibcName)
            all.push_back({row.set, glibc, row.glibcName});
    }
    return all;
}

class DifferentialTest : public testing::TestWithParam<SetAndPeer> {};

TEST_P(DifferentialTest, DiffersInKnownWaysOnly) {
    auto const& [set, peerKind, peerName] = GetParam();
    auto const peer = peerKind == icu ? icuCodec(peerName) : glibcCodec(peerName);
    if (!peer)
        GTEST_SKIP() << "no converter " << peerName << " in " << peerVersions();
    Comparison comparison(set, peerKind, *peer);
    comparison.decodeAll();
    comparison.encodeAll();
    std::cout << VynCharSetToString(set) << " against " << peerName << ", " << peerVersions() << ": "
              << comparison.compared() << " codes compared\n";
    RecordProperty("peer", std::string(peerName) + ", " + peerVersions());
    RecordProperty("compared", std::to_string(comparison.compared()));
    EXPECT_EQ(comparison.unexplained(), 0u);
    comparison.checkThatKnownDifferencesOccur();
}

INSTANTIATE_TEST_SUITE_P(Sets, DifferentialTest, testing::ValuesIn(comparisons()), testing::PrintToStringParamName());

TEST(DifferentialSetsTest, EveryServedSetIsListedOnce) {
    std::map<VynCharSet, int> rows;
    for (ComparedSet const& row : comparedSets)
        ++rows[row.set];
    auto const served = [utf8 = VynCharSetConverter::getConverter(VYNCS_UTF8)](VynCharSet set) {
        return set == VYNCS_UTF8 || (set != VYNCS_OS_DEFAULT && VynCharSetConverter::getConverter(set) != utf8);
    };
#define EXPECT_ONE_ROW(set, number) EXPECT_EQ(rows[set], served(set) ? 1 : 0) << #set;
    VYN_CHARSETS(EXPECT_ONE_ROW)
#undef EXPECT_ONE_ROW
}

} // namespace
