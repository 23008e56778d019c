#pragma once

namespace vyn {

/// What one step of a codec found at its read position. Steps only report: the loops alone know policies, the flag,
/// room and limits, and write replacements and terminators.
enum class Verdict : unsigned char {
    Mapped,
    Unmapped,  ///< A character by its form, but not one that converts.
    Malformed, ///< Not a character. The byte sets differ in whether the source limit is tested behind one.
    End,       ///< The text ends here, whatever the policy.
};

/// A character on the way to UTF-16.
struct Decoded {
    unsigned value; ///< Scalar value, where mapped.
    unsigned bytes; ///< Source bytes that it takes, also where it is replaced.
    Verdict verdict;
};

/// A character on the way from UTF-16.
struct Encoded {
    unsigned code;  ///< Its bytes, the last one in the lowest eight bits, where mapped.
    unsigned bytes; ///< How many they are.
    unsigned units; ///< Source units that it takes, also where it is replaced.
    Verdict verdict;
};

/// What a step of counting found: `bytes` of the source make `units`. No bytes: the count ends.
struct Counted {
    unsigned bytes;
    unsigned units;
};

constexpr unsigned replacementCharacter = 0xFFFD;
constexpr unsigned char replacementByte = '?';

constexpr Decoded mapped(unsigned value, unsigned bytes) {
    return {value, bytes, Verdict::Mapped};
}
constexpr Decoded unmapped(unsigned bytes) {
    return {0, bytes, Verdict::Unmapped};
}
constexpr Decoded malformed(unsigned bytes) {
    return {0, bytes, Verdict::Malformed};
}

/// What a table says of a code, 0 being none.
constexpr Decoded lookedUp(unsigned value, unsigned bytes) {
    return {value, bytes, value != 0 ? Verdict::Mapped : Verdict::Unmapped};
}

} // namespace vyn
