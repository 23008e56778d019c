#pragma once

namespace vyn {

// The parts of a UTF-8 sequence, leniently: overlong forms, surrogates and values above U+10FFFF pass. C0 80 is U+0000.

/// Length of the sequence that a byte starts, by its high four bits; 0 for a continuation byte.
constexpr unsigned oUTF8Bits[16] = {1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 2, 2, 3, 4};

constexpr bool isContinuation(unsigned byte) {
    return (byte & 0xC0) == 0x80;
}

constexpr unsigned twoByteValue(auto const& at) {
    return (at[0] & 0x1FU) << 6 | (at[1] & 0x3FU);
}
constexpr unsigned threeByteValue(auto const& at) {
    return (at[0] & 0x0FU) << 12 | (at[1] & 0x3FU) << 6 | (at[2] & 0x3FU);
}
constexpr unsigned fourByteValue(auto const& at) {
    return (at[0] & 0x0FU) << 18 | (at[1] & 0x3FU) << 12 | (at[2] & 0x3FU) << 6 | (at[3] & 0x3FU);
}

// The bytes of a value, the last one in the lowest eight bits.

constexpr unsigned twoByteCode(unsigned value) {
    return 0xC080 | value >> 6 << 8 | (value & 0x3F);
}
constexpr unsigned threeByteCode(unsigned value) {
    return 0xE08080 | value >> 12 << 16 | (value >> 6 & 0x3F) << 8 | (value & 0x3F);
}
constexpr unsigned fourByteCode(unsigned value) {
    return 0xF0808080 | (value >> 18 & 7) << 24 | (value >> 12 & 0x3F) << 16 | (value >> 6 & 0x3F) << 8 |
           (value & 0x3F);
}

} // namespace vyn
