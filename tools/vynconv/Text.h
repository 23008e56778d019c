#pragma once

#include <cstddef>
#include <vector>

namespace vynconv {

constexpr unsigned short replacementCharacter = 0xFFFD;

/// A character that decoding lost, by what stands for it in the decoded text.
struct Loss {
    std::size_t unit;  ///< Where that begins.
    std::size_t units; ///< 0: nothing, its byte was skipped. 1: U+FFFD. 2: units of a value out of range.
};

/// A chunk of decoded text in UTF-16. It may hold zero units; `units[length]` is there and may be overwritten.
struct Text {
    std::vector<unsigned short> units;
    std::size_t length = 0;
    std::vector<Loss> losses; // in the order of the source

    void append(unsigned short unit) { units[length++] = unit; }
};

} // namespace vynconv
