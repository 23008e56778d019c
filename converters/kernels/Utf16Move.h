#pragma once

#include "converters/kernels/Kernels.h"
#include "converters/kernels/Pairs.h"

namespace vyn {
namespace {

// Well-formed UTF-16 from one byte order to another: the units stay, only surrogates without their other half end it.

/// Vectors are in the order of the machine in between.
template <ByteOrder Order>
Units ordered(Units vector) {
    return Order == ByteOrder::machine ? vector : vector << 8 | vector >> 8;
}

template <ByteOrder From, ByteOrder To>
unsigned long moveUtf16(unsigned char const* src, unsigned long count, unsigned char* dst) {
    auto const* const start = src;
    for (auto const* const end = src + 2 * count; end - src >= blockBytes;) {
        UnitBlock block;
        for (long i = 0; i < blockVectors; ++i)
            block[i] = ordered<From>(units(load(src + i * vectorBytes)));
        long const length = hasSurrogates(block) ? lengthOfPairs(block) : blockUnits;
        if (length < 0)
            break;
        for (long i = 0; i < blockVectors - 1; ++i)
            store(dst + i * vectorBytes, ordered<To>(block[i]));
        // The last vector ends where the characters do, so that nothing is written behind them.
        long const last = 2 * length - vectorBytes;
        store(dst + last, ordered<To>(ordered<From>(units(load(src + last)))));
        src += 2 * length;
        dst += 2 * length;
    }
    return static_cast<unsigned long>(src - start) / 2;
}

} // namespace
} // namespace vyn
