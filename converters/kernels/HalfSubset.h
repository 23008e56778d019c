#pragma once

namespace vyn {

/// Some of the 128 bytes that are ASCII, or of those that are not, as rows for a look-up by the low half of a byte: a bit
/// for each high half.
struct HalfSubset {
    constexpr void insert(unsigned byte) {
        ofLow[byte & 0x0F] |= static_cast<unsigned char>(1 << (byte >> 4 & 0x07));
        empty = false;
    }

    unsigned char ofLow[16] = {};
    bool empty = true;
};

} // namespace vyn
