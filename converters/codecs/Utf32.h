#pragma once

#include "base/Surrogates.h"
#include "converters/kernels/Utf16Blocks.h"
#include "converters/loops/Codec.h"

namespace vyn {

/// UTF-32 in the machine's byte order, leniently: every value converts. Surrogates stay what they are, a value above
/// U+10FFFF becomes a meaningless pair.
struct Utf32Codec {
    using Element = Value32<std::endian::native>;
    static constexpr unsigned maxUnitsPerElement = 2;
    static constexpr unsigned maxElementsPerUnit = 1;

    static constexpr bool ready() { return true; }

    Decoded decodeOne(auto text) const { return mappedScalar(text[0], 1); }

    /// A value counts one unit deliberately, even if it becomes two.
    Counted countOne(auto) const { return {1, 1}; }

    Encoded encodeOne(auto text) const {
        if (!isHighSurrogate(text[0]))
            return mappedCode(text[0], 1, 1);
        if (!text.has(1) || !isLowSurrogate(text[1]))
            return unmappedUnits(1, !text.has(1));
        return mappedCode(combineSurrogates(text[0], text[1]), 1, 2);
    }
};

static_assert(Decodes<Utf32Codec> && Encodes<Utf32Codec> && CountsUnits<Utf32Codec>);

/// UTF-32 in either byte order, for texts with a length: characters only.
template <std::endian Order>
struct StrictUtf32Codec : Utf32Codec, PlainUnitBlocks<Value32<Order>> {
    using Element = Value32<Order>;

    Decoded decodeOne(auto text) const {
        unsigned const value = text[0];
        return isSurrogate(value) || value > maxScalarValue ? unmapped(1) : mappedScalar(value, 1);
    }

    Encoded encodeOne(auto text) const {
        return isLowSurrogate(text[0]) ? unmappedUnits(1) : Utf32Codec::encodeOne(text);
    }
};

static_assert(DecodesBlocks<StrictUtf32Codec<std::endian::big>> && EncodesBlocks<StrictUtf32Codec<std::endian::big>>);
static_assert(DecodesPieces<StrictUtf32Codec<std::endian::big>> && EncodesPieces<StrictUtf32Codec<std::endian::big>>);

} // namespace vyn
