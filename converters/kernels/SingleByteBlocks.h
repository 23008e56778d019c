#pragma once

#include "base/Words.h"

#include <vynulib/LookupTable.h>

namespace vyn {

/// Decodes blocks of four mapped bytes, as many as follow each other in [src, end). Returns the bytes, which are as many
/// units. The units of a block make one word, which shows at once whether one of them is 0, unmapped.
inline long decodeSingleByteBlocks(unsigned short const* unitOf, unsigned char const* src, unsigned char const* end,
                                   unsigned short* dst) {
    constexpr long block = 4;
    long taken = 0;
    for (; end - src - taken >= block; taken += block) {
        std::uint64_t word = 0;
        for (long i = 0; i < block; ++i)
            word |= std::uint64_t{unitOf[src[taken + i]]} << 16 * i;
        if (hasZeroUnit(word))
            break;
        std::memcpy(dst + taken, &word, sizeof word);
    }
    return taken;
}

/// The same from units to bytes.
inline long encodeSingleByteBlocks(LookupTable<unsigned char> const& byteOf, unsigned short const* src,
                                   unsigned short const* end, unsigned char* dst) {
    constexpr long block = 4;
    long taken = 0;
    for (; end - src - taken >= block; taken += block) {
        unsigned const a = byteOf.lookup(src[taken]), b = byteOf.lookup(src[taken + 1]);
        unsigned const c = byteOf.lookup(src[taken + 2]), d = byteOf.lookup(src[taken + 3]);
        if (a == 0 || b == 0 || c == 0 || d == 0)
            break;
        std::uint32_t const word = a | b << 8 | c << 16 | d << 24;
        std::memcpy(dst + taken, &word, sizeof word);
    }
    return taken;
}

} // namespace vyn
