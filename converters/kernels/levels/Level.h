#pragma once

#include "converters/kernels/DoubleByte.h"
#include "converters/kernels/SingleByte.h"
#include "converters/kernels/UnitComparison.h"
#include "converters/kernels/UnitLength.h"
#include "converters/kernels/UnitSearch.h"
#include "converters/kernels/Utf8Decode.h"
#include "converters/kernels/Utf8Encode.h"

namespace vyn {
namespace {

/// The kernels in the vectors of the level that includes this.
constexpr Kernels kernelsOf(char const* level) {
    return {
        .level = level,
        .decodeLenientUtf8 = decodeUtf8<Utf8Rules::lenient>,
        .decodeStrictUtf8 = decodeUtf8<Utf8Rules::strict>,
        .encodeUtf8 = encodeUtf8,
        .countLenientUtf8 = countUtf8Units,
        .countUtf8 = countUtf8Bytes,
        .decodeSingleByte = decodeSingleByte,
        .encodeSingleByte = encodeSingleByte,
        .decodeDoubleByte = decodeDoubleByte,
        .encodeDoubleByte = encodeDoubleByte,
        .unitLength = unitLength,
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
