#pragma once

namespace vyn {

/// The high bits of the two bytes that stand for a code of a set of 94 rows by 94 cells. Maps hold codes without them.
constexpr unsigned rowCellHighBits = 0x8080;

constexpr unsigned short rowCellCode(unsigned first, unsigned second) {
    return static_cast<unsigned short>((first << 8 | second) & ~rowCellHighBits);
}

} // namespace vyn
