#pragma once

#include "base/Surrogates.h"
#include "converters/kernels/Bulk.h"

namespace vyn {

/// Moves blocks of units that are no surrogates, as many as follow each other in [src, end), from one type of element to
/// another: units in either byte order, and values. Returns the elements moved. The loops have no branch in them, so that
/// compilers use vectors.
template <class Source, class Target>
long movePlainUnits(Source const* src, Source const* end, Target* __restrict dst) {
    constexpr long block = 16;
    long moved = 0;
    for (; end - src - moved >= block; moved += block) {
        unsigned units[block];
        unsigned odd = 0;
        for (long i = 0; i < block; ++i) {
            units[i] = src[moved + i];
            odd |= static_cast<unsigned>(isSurrogate(units[i]) || units[i] > maxBmpValue);
        }
        if (odd != 0)
            break;
        for (long i = 0; i < block; ++i)
            dst[moved + i] = static_cast<unsigned short>(units[i]);
    }
    return moved;
}

/// The bulk forms of a codec whose elements hold units, or values, as they are.
template <class Element>
struct PlainUnitBlocks {
    static BulkDecoded<Element> decodeBlocks(Element const* src, Element const* end, unsigned short* dst) {
        long const moved = movePlainUnits(src, end, dst);
        return {src + moved, dst + moved};
    }
    static BulkEncoded<Element> encodeBlocks(unsigned short const* src, unsigned short const* end, Element* dst) {
        long const moved = movePlainUnits(src, end, dst);
        return {src + moved, dst + moved};
    }
};

} // namespace vyn
