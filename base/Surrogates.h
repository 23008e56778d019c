#pragma once

namespace vyn {

constexpr unsigned maxBmpValue = 0xFFFF;
constexpr unsigned maxScalarValue = 0x10FFFF;

constexpr bool isHighSurrogate(unsigned unit) {
    return (unit & 0xFC00U) == 0xD800;
}

constexpr bool isLowSurrogate(unsigned unit) {
    return (unit & 0xFC00U) == 0xDC00;
}

constexpr bool isSurrogate(unsigned value) {
    return (value & ~0x7FFU) == 0xD800;
}

constexpr unsigned combineSurrogates(unsigned high, unsigned low) {
    return ((high - 0xD7C0) << 10) + (low - 0xDC00);
}

/// In 16-bit arithmetic that wraps: a value outside the supplementary planes gives a meaningless unit.
constexpr unsigned short highSurrogateOf(unsigned value) {
    return static_cast<unsigned short>((value >> 10) + 0xD7C0);
}

constexpr unsigned short lowSurrogateOf(unsigned value) {
    return static_cast<unsigned short>((value & 0x3FF) + 0xDC00);
}

} // namespace vyn
