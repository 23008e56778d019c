#pragma once

#include "tests/differential/Codecs.h"

#include <cstdint>
#include <ostream>
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

/// One number or all from the first to the last.
struct CodeRange {
    std::uint32_t first;
    std::uint32_t last = first;
};

/// Why some codes of some sets differ. It has to explain at least one code in every comparison that it is listed for.
struct KnownDifference {
    char const* reason;
    Peers peers;
    std::vector<VynCharSet> sets;
    bool (*holds)(Difference const&);
    std::vector<CodeRange> codes = {}; ///< As big-endian numbers. None stands for all codes.
};

extern std::vector<KnownDifference> const knownDifferences;

/// The code as a big-endian number.
std::uint32_t codeNumber(std::string const& code);

/// The peers' converters that are nearest to a set; null where a peer has none.
struct ComparedSet {
    VynCharSet set;
    char const* icuName;
    char const* glibcName;

    friend void PrintTo(ComparedSet const& row, std::ostream* out) { *out << VynCharSetToString(row.set); }
};

extern std::vector<ComparedSet> const comparedSets;
