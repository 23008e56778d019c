#pragma once

#include "base/Words.h"

namespace vyn {

/// How much the ASCII kernels move at a time. Their loops have no branch in them, so that compilers use vectors.
constexpr long asciiBlock = 16;

constexpr std::uint64_t inEachByte = 0x0101010101010101;

inline bool isAsciiBlock(unsigned char const* src) {
    return ((wordAt(src, 0) | wordAt(src, 1)) & 0x80 * inEachByte) == 0;
}

inline bool isAsciiBlock(unsigned short const* src) {
    return ((wordAt(src, 0) | wordAt(src, 1) | wordAt(src, 2) | wordAt(src, 3)) & 0xFF80 * inEachUnit) == 0;
}

/// The same without controls and DEL, which some sets have elsewhere. A borrow or carry comes only from what is not
/// printable itself.
inline bool isPrintableBlock(unsigned char const* src) {
    std::uint64_t odd = 0;
    for (unsigned i = 0; i < 2; ++i)
        odd |= wordAt(src, i) | (wordAt(src, i) - ' ' * inEachByte) | (wordAt(src, i) + inEachByte);
    return (odd & 0x80 * inEachByte) == 0;
}

inline bool isPrintableBlock(unsigned short const* src) {
    std::uint64_t odd = 0;
    for (unsigned i = 0; i < 4; ++i)
        odd |= wordAt(src, i) | (wordAt(src, i) - ' ' * inEachUnit) | (wordAt(src, i) + inEachUnit);
    return (odd & 0xFF80 * inEachUnit) == 0;
}

/// Moves the blocks at `src` that end by `end` and that `isBlock` takes, byte to unit or unit to byte. Returns the elements
/// moved.
template <class Source, class Target, class IsBlock>
long moveBlocks(Source const* src, Source const* end, Target* __restrict dst, IsBlock isBlock) {
    long moved = 0;
    while (end - src - moved >= asciiBlock && isBlock(src + moved)) {
        for (long i = 0; i < asciiBlock; ++i)
            dst[moved + i] = static_cast<Target>(src[moved + i]);
        moved += asciiBlock;
    }
    return moved;
}

template <class Source, class Target>
long moveAsciiBlocks(Source const* src, Source const* end, Target* dst) {
    return moveBlocks(src, end, dst, [](Source const* at) { return isAsciiBlock(at); });
}

/// The same for printable blocks. Looks at the first two elements before, as a mere space is no run.
template <class Source, class Target>
long movePrintableBlocks(Source const* src, Source const* end, Target* dst) {
    if (end - src < asciiBlock || (src[0] | src[1]) >= 0x80)
        return 0;
    return moveBlocks(src, end, dst, [](Source const* at) { return isPrintableBlock(at); });
}

} // namespace vyn
