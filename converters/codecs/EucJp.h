#pragma once

#include "converters/codecs/MultibyteTables.h"
#include "converters/codecs/RowCell.h"
#include "converters/loops/Codec.h"

#include <vynulib/VynCharSetConverterEUC_JP.h>

#include <memory>

namespace vyn {

/// JIS X 0208 with JIS X 0201 merged into it, which wins where both have a character, and JIS X 0212 apart.
class EucJpTables : public MultibyteTables {
public:
    /// Without a map of JIS X 0212, JIS X 0201 is left out too.
    EucJpTables(unsigned short const* map0208, unsigned short const* map0201, unsigned short const* map0212)
        : MultibyteTables(map0208), jis0212(map0212) {
        if (map0212)
            enter(map0201);
    }

    MultibyteTables jis0212;
};

struct EucJpCodec : DoubleByteVectors<EucJpTables> {
    using Element = unsigned char;
    static constexpr unsigned maxUnitsPerElement = 1;
    static constexpr unsigned maxElementsPerUnit = 3;

    static constexpr unsigned SS2 = VynCharSetConverterEUC_JP::m_cSS2;
    static constexpr unsigned SS3 = VynCharSetConverterEUC_JP::m_cSS3;
    static constexpr unsigned endOfAscii = 0x7F; // DEL is deliberately no character of this set
    static constexpr bool isKatakana(unsigned byte) { return byte >= 0xA1 && byte <= 0xDF; }

    bool ready() const { return tables != nullptr; }

    Decoded decodeOne(auto text) const {
        if (text[0] < endOfAscii)
            return mappedUnit(text[0], 1);
        if (!text.has(1))
            return unmapped(1, true);
        if (text[0] == SS2)
            return sequence(isKatakana(text[1]) ? tables->forward.lookup(text[1]) : 0, 2);
        if (text[0] == SS3) {
            if (!text.has(2))
                return unmapped(1, true);
            return sequence(tables->jis0212.forward.lookup(rowCellCode(text[1], text[2])), 3);
        }
        // The high bit of the second byte is deliberately not tested: A4 22 is read as A4 A2. A lead byte 80 reaches
        // the plain codes of JIS X 0201: 80 DC is U+00A5.
        return sequence(tables->forward.lookup(rowCellCode(text[0], text[1])), 2);
    }

    Encoded encodeOne(auto text) const {
        unsigned const unit = text[0];
        if (unit < endOfAscii)
            return mappedCode(unit, 1, 1);
        if (unsigned const code = tables->reverse.lookup(text[0]); code != 0)
            return mappedCode(isKatakana(code) ? SS2 << 8 | code : highBitsSet(code), 2, 1);
        if (unsigned const code = tables->jis0212.reverse.lookup(text[0]); code != 0)
            return mappedCode(SS3 << 16 | highBitsSet(code), 3, 1);
        return unmappedUnits(1);
    }

    static constexpr bool keepsAscii() { return true; }

    /// Unlike the conversion, counts every katakana byte after SS2, and ends where the elements left can't hold the
    /// sequence that the first one begins.
    Counted countOne(auto text) const {
        if (text[0] < endOfAscii)
            return {1, 1};
        if (text.left < (text[0] == SS3 ? 3 : 2))
            return {0, 0};
        if (text[0] == SS2)
            return {isKatakana(text[1]) ? 2U : 1U, 1};
        return {decodeOne(text).elements, 1};
    }

private:
    /// A sequence without a character gives up its first byte only.
    static Decoded sequence(unsigned value, unsigned bytes) {
        return value != 0 ? mappedUnit(value, bytes) : unmapped(1);
    }

    static unsigned highBitsSet(unsigned code) { return (code + rowCellHighBits) & 0xFFFF; }
};

static_assert(Decodes<EucJpCodec> && Encodes<EucJpCodec> && CountsUnits<EucJpCodec> && KeepsAscii<EucJpCodec>);

/// For texts with a length: a byte after the first without its high bit belongs to no character, so that a quote after a
/// cut-off lead byte stays a quote.
struct StrictEucJpCodec : EucJpCodec {
    Decoded decodeOne(auto text) const {
        if (text[0] < endOfAscii)
            return mappedUnit(text[0], 1);
        auto const breaksOff = [&text](unsigned i) { return text.has(i) && (text[i] & 0x80) == 0; };
        if (breaksOff(1) || (text[0] == SS3 && text.has(1) && breaksOff(2)))
            return unmapped(1);
        return EucJpCodec::decodeOne(text);
    }
};

static_assert(DecodesPieces<StrictEucJpCodec> && EncodesPieces<StrictEucJpCodec>);
static_assert(DecodesVectors<StrictEucJpCodec> && EncodesVectors<StrictEucJpCodec>);

} // namespace vyn
