#pragma once

namespace vyn {

/// The letters of ASCII in one case, which become those of the other: the first one of them.
enum AsciiLetters : unsigned short { asciiCapitals = 'A', asciiSmall = 'a' };

constexpr unsigned short asciiLetterCount = 26;
constexpr unsigned short asciiCaseBit = 0x20; ///< What tells both cases apart.

/// What each unit becomes where its case changes, and what of that ASCII alone tells.
struct CaseMap {
    AsciiLetters changed;
    unsigned short of[0x10000];
};

} // namespace vyn
