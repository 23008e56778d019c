#pragma once

#include "converters/codecs/MultibyteTables.h"
#include "converters/codecs/RowCell.h"
#include "converters/loops/Codec.h"

namespace vyn {

/// How the bytes of EUC-CN and EUC-KR make characters. No table of codes is needed to count them.
struct EucCnKrForm {
    using Element = unsigned char;

    static constexpr bool ready() { return true; }

    // DEL is deliberately no character of these sets: it is replaced in either direction.
    static constexpr bool isAscii(unsigned value) { return value >= 0x01 && value <= 0x7E; }
    static constexpr bool isRowOrCell(unsigned byte) { return byte >= 0xA1 && byte <= 0xFE; }

    static Counted countOne(auto text) {
        bool const pair = isRowOrCell(text[0]) && text.has(1) && isRowOrCell(text[1]);
        return {pair ? 2U : 1U, 1};
    }
};

static_assert(CountsUnits<EucCnKrForm>);

struct EucCnKrCodec : EucCnKrForm, DoubleByteVectors<MultibyteTables> {
    static constexpr unsigned maxUnitsPerElement = 1;
    static constexpr unsigned maxElementsPerUnit = 2;

    bool ready() const { return tables != nullptr; }

    Decoded decodeOne(auto text) const {
        if (isAscii(text[0]))
            return mappedUnit(text[0], 1);
        if (!isRowOrCell(text[0]))
            return unmapped(1);
        if (!text.has(1) || !isRowOrCell(text[1]))
            return unmapped(1, !text.has(1));
        return lookedUpUnit(tables->forward.lookup(rowCellCode(text[0], text[1])), 2);
    }

    /// Looks up ASCII as well, as a branch between one byte and two, which alternate in real text, would cost more.
    Decoded decodeAhead(Element const* at) const {
        bool const ascii = isAscii(at[0]);
        if (!ascii && (!isRowOrCell(at[0]) || !isRowOrCell(at[1])))
            return unmapped(1);
        unsigned const value = tables->forward.lookup(rowCellCode(at[0], at[1]));
        return lookedUpUnit(ascii ? at[0] : value, ascii ? 1 : 2);
    }

    Encoded encodeOne(auto text) const {
        if (isAscii(text[0]))
            return mappedCode(text[0], 1, 1);
        unsigned const code = tables->reverse.lookup(text[0]);
        return code != 0 ? mappedCode(code + rowCellHighBits, 2, 1) : unmappedUnits(1);
    }

    static constexpr bool keepsAscii() { return true; }
};

static_assert(DecodesAhead<EucCnKrCodec> && Encodes<EucCnKrCodec> && KeepsAscii<EucCnKrCodec>);
static_assert(DecodesVectors<EucCnKrCodec> && EncodesVectors<EucCnKrCodec>);
static_assert(DecodesPieces<EucCnKrCodec> && EncodesPieces<EucCnKrCodec>);

} // namespace vyn
