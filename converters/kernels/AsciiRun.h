#pragma once

#include "base/Words.h"

namespace vyn {

/// How much the ASCII kernels move at a time. Their loops have no branch in them, so that compilers use vectors.
constexpr long asciiBlock = 16;

inline bool isAsciiBlock(unsigned char const* src) {
    return ((wordAt(src, 0) | wordAt(src, 1)) & 0x8080808080808080) == 0;
}

inline bool isAsciiBlock(unsigned short const* src) {
    return ((wordAt(src, 0) | wordAt(src, 1) | wordAt(src, 2) | wordAt(src, 3)) & 0xFF80 * inEachUnit) == 0;
}

/// Moves the blocks of ASCII at `src` that end by `end`, byte to unit or unit to byte. Returns the elements moved.
template <class Source, class Target>
long moveAsciiBlocks(Source const* src, Source const* end, Target* __restrict dst) {
    long moved = 0;
    while (end - src - moved >= asciiBlock && isAsciiBlock(src + moved)) {
        for (long i = 0; i < asciiBlock; ++i)
            dst[moved + i] = static_cast<Target>(src[moved + i]);
        moved += asciiBlock;
    }
    return moved;
}

} // namespace vyn
