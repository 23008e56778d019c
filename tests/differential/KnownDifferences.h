#pragma once

#include "tests/differential/Codecs.h"

#include <cstdint>
#include <utility>
#include <vector>

/// One code whose character is not the same in the library and in a peer: found while decoding it, or as what a
/// character was encoded to.
struct Difference {
    std::string const& code;
    Text const& ours;
    Text const& theirs;
    Codec const& library;
    Codec const& peer;
};

enum Peers : unsigned { icu = 1, glibc = 2, bothPeers = icu | glibc };

/// Codes as big-endian numbers, written "1A 8160-8161" in hexadecimal. None stands for all codes.
class CodeRanges {
public:
    CodeRanges(char const* text);
    bool contain(std::uint32_t code) const;

private:
    std::vector<std::pair<std::uint32_t, std::uint32_t>> m_ranges;
};

/// Why some codes of some sets differ. It has to explain at least one code in every comparison that it is listed for.
struct KnownDifference {
    char const* reason;
    Peers peers;
    std::vector<VynCharSet> sets;
    bool (*holds)(Difference const&);
    CodeRanges codes;
};

extern std::vector<KnownDifference> const knownDifferences;

/// The code as a big-endian number.
std::uint32_t codeNumber(std::string const& code);

/// The peers' converters that are nearest to a set; null where a peer has none.
struct ComparedSet {
    VynCharSet set;
    char const* icuName;
    char const* glibcName;
};

extern std::vector<ComparedSet> const comparedSets;
