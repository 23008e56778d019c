#pragma once

#include "tests/differential/Codecs.h"

#include <cstdint>
#include <ostream>
#include <vector>

/// One code whose character is not the same in the library and in ICU: found while decoding it, or as what a
/// character was encoded to.
struct Difference {
    std::string const& code;
    Text const& ours;
    Text const& theirs;
    Codec const& library;
    Codec const& icu;
};

/// One number or all from the first to the last.
struct CodeRange {
    std::uint32_t first;
    std::uint32_t last = first;
};

/// Why some codes of some sets differ. It has to explain at least one code in each of them.
struct KnownDifference {
    char const* reason;
    std::vector<VynCharSet> sets;
    bool (*holds)(Difference const&);
    std::vector<CodeRange> codes = {}; ///< As big-endian numbers. None stands for all codes.
};

extern std::vector<KnownDifference> const knownDifferences;

/// The code as a big-endian number.
std::uint32_t codeNumber(std::string const& code);

/// The converter of ICU that is nearest to a set; null where there is none.
struct ComparedSet {
    VynCharSet set;
    char const* icuName;

    friend void PrintTo(ComparedSet const& row, std::ostream* out) { *out << VynCharSetToString(row.set); }
};

extern std::vector<ComparedSet> const comparedSets;
