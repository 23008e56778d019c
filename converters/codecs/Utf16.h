#pragma once

#include "base/Surrogates.h"
#include "converters/kernels/Kernels.h"
#include "converters/kernels/Utf16Blocks.h"
#include "converters/loops/Codec.h"

namespace vyn {

/// UTF-16 in either byte order, for texts with a length: a surrogate is a character only with its other half.
template <std::endian Order>
struct StrictUtf16Codec : PlainUnitBlocks<Unit16<Order>> {
    using Element = Unit16<Order>;
    static constexpr unsigned maxUnitsPerElement = 1;
    static constexpr unsigned maxElementsPerUnit = 1;

    static BulkDecoded<Element> decodeVectors(Element const* src, Element const* end, unsigned short* dst) {
        unsigned long const moved =
            move(isMachineOrder ? kernels.moveUtf16 : kernels.moveUtf16FromOther, src, end, dst);
        return {src + moved, dst + moved};
    }
    static BulkEncoded<Element> encodeVectors(unsigned short const* src, unsigned short const* end, Element* dst) {
        unsigned long const moved = move(isMachineOrder ? kernels.moveUtf16 : kernels.moveUtf16ToOther, src, end, dst);
        return {src + moved, dst + moved};
    }

    Decoded decodeOne(auto text) const {
        unsigned const unit = text[0];
        if (!isSurrogate(unit))
            return mappedUnit(unit, 1);
        if (!isHighSurrogate(unit))
            return unmapped(1);
        if (!text.has(1) || !isLowSurrogate(text[1]))
            return unmapped(1, !text.has(1));
        return mappedScalar(combineSurrogates(unit, text[1]), 2);
    }

    Encoded encodeOne(auto text) const {
        if (!isSurrogate(text[0]))
            return mappedCode(text[0], 1, 1);
        if (!isHighSurrogate(text[0]))
            return unmappedUnits(1);
        if (!text.has(1) || !isLowSurrogate(text[1]))
            return unmappedUnits(1, !text.has(1));
        return mappedCode(std::uint64_t{text[0]} << 16 | text[1], 2, 2);
    }

private:
    static constexpr bool isMachineOrder = Order == std::endian::native;

    template <class From, class To>
    static unsigned long move(Kernels::MoveUnits* kernel, From const* src, From const* end, To* dst) {
        return kernel(reinterpret_cast<unsigned char const*>(src), static_cast<unsigned long>(end - src),
                      reinterpret_cast<unsigned char*>(dst));
    }
};

static_assert(DecodesPieces<StrictUtf16Codec<std::endian::big>> && EncodesPieces<StrictUtf16Codec<std::endian::big>>);
static_assert(DecodesVectors<StrictUtf16Codec<std::endian::big>> && EncodesVectors<StrictUtf16Codec<std::endian::big>>);
static_assert(DecodesBlocks<StrictUtf16Codec<std::endian::big>> && EncodesBlocks<StrictUtf16Codec<std::endian::big>>);

} // namespace vyn
