#pragma once

#include "converters/kernels/Kernels.h"
#include "converters/kernels/SingleByteBlocks.h"
#include "converters/kernels/SingleByteRows.h"
#include "converters/loops/Codec.h"

#include <vynulib/LookupTable.h>

namespace vyn {

/// The tables of a single-byte set in both directions, 0 being none.
struct SingleByteTables {
    /// `map`: pairs of a byte and its unit up to (0, 0); of two with the same byte or unit the later counts.
    explicit SingleByteTables(unsigned short const* map) {
        for (auto const* pair = map; pair[0] != 0 || pair[1] != 0; pair += 2) {
            auto const byte = static_cast<unsigned char>(pair[0]);
            forward[byte] = pair[1];
            reverse.insert(pair[1], byte);
        }
        rows.fill(forward, reverse);
    }

    unsigned short forward[256] = {};
    LookupTable<unsigned char> reverse;
    SingleByteRows rows;
};

struct SingleByteCodec {
    using Element = unsigned char;
    static constexpr unsigned maxUnitsPerElement = 1;
    static constexpr unsigned maxElementsPerUnit = 1;

    SingleByteTables const* tables;

    bool ready() const { return tables != nullptr; }

    Decoded decodeOne(auto text) const { return lookedUpUnit(tables->forward[text[0]], 1); }

    /// Surrogates are looked up one by one, so that neither of a pair converts.
    Encoded encodeOne(auto text) const {
        unsigned const byte = tables->reverse.lookup(text[0]);
        return byte != 0 ? mappedCode(byte, 1, 1) : unmappedUnits(1);
    }

    BulkDecoded<Element> decodeVectors(Element const* src, Element const* end, unsigned short* dst) const {
        return kernels.decodeSingleByte(tables->rows, src, end, dst).from(src, dst);
    }
    BulkEncoded<Element> encodeVectors(unsigned short const* src, unsigned short const* end, Element* dst) const {
        return kernels.encodeSingleByte(tables->rows, src, end, dst);
    }

    BulkDecoded<Element> decodeBlocks(Element const* src, Element const* end, unsigned short* dst) const {
        long const taken = decodeSingleByteBlocks(tables->forward, src, end, dst);
        return {src + taken, dst + taken};
    }
    BulkEncoded<Element> encodeBlocks(unsigned short const* src, unsigned short const* end, Element* dst) const {
        long const taken = encodeSingleByteBlocks(tables->reverse, src, end, dst);
        return {src + taken, dst + taken};
    }
};

static_assert(DecodesVectors<SingleByteCodec> && EncodesVectors<SingleByteCodec>);
static_assert(DecodesBlocks<SingleByteCodec> && EncodesBlocks<SingleByteCodec>);
static_assert(DecodesPieces<SingleByteCodec> && EncodesPieces<SingleByteCodec>);

} // namespace vyn
