#pragma once

#include "converters/kernels/DoubleByte.h"
#include "converters/kernels/SingleByte.h"
#include "converters/kernels/TextLength.h"
#include "converters/kernels/UnitComparison.h"
#include "converters/kernels/UnitSearch.h"
#include "converters/kernels/Utf16Move.h"
#include "converters/kernels/Utf8Decode.h"
#include "converters/kernels/Utf8Encode.h"

namespace vyn {
namespace {

/// `Decode` as the kernels of a table are declared.
template <auto Decode, class... Rows>
[[gnu::flatten]] KernelDecoded counted(Rows const&... rows, unsigned char const* src, unsigned char const* end,
                                       unsigned short* dst) {
    BulkDecoded<unsigned char> const done = Decode(rows..., src, end, dst);
    return {.bytes = static_cast<unsigned long>(done.src - src),
            .units = static_cast<unsigned long>(done.dst - dst) & ~0UL >> 1,
            .sawIllegal = done.sawIllegal};
}

/// The kernels in the vectors of the level that includes this.
constexpr Kernels kernelsOf(char const* level) {
    return {
        .level = level,
        .decodeLenientUtf8 = counted<decodeUtf8<Utf8Rules::lenient>>,
        .decodeStrictUtf8 = counted<decodeUtf8<Utf8Rules::strict>>,
        .encodeUtf8 = encodeUtf8,
        .moveUtf16 = moveUtf16<ByteOrder::machine, ByteOrder::machine>,
        .moveUtf16FromOther = moveUtf16<ByteOrder::other, ByteOrder::machine>,
        .moveUtf16ToOther = moveUtf16<ByteOrder::machine, ByteOrder::other>,
        .countLenientUtf8 = countUtf8Units,
        .countUtf8 = countUtf8Bytes,
        .decodeSingleByte = counted<decodeSingleByte, SingleByteRows>,
        .encodeSingleByte = encodeSingleByte,
        .decodeDoubleByte = counted<decodeDoubleByte, DoubleByteRows>,
        .encodeDoubleByte = encodeDoubleByte,
        .byteLength = textLength<unsigned char>,
        .unitLength = textLength<unsigned short>,
        .firstUnit = firstUnit,
        .lastUnit = lastUnit,
        .firstEnds = firstEnds,
        .lastEnds = lastEnds,
        .sameUnits = sameUnits,
        .sameUnitsNoCase = sameUnitsNoCase,
        .changeAsciiCase = changeAsciiCase,
        .changeCase = changeCase,
    };
}

} // namespace
} // namespace vyn
