#pragma once

#include "base/UnitEscape.h"
#include "converters/loops/Codec.h"

namespace vyn {

/// UTF-16 as ASCII with escapes: every unit converts, and so does every byte.
struct Utf16EscCodec {
    using Element = unsigned char;
    static constexpr unsigned maxUnitsPerElement = 1;
    static constexpr unsigned maxElementsPerUnit = unitEscapeLength;

    static constexpr bool ready() { return true; }

    Decoded decodeOne(auto text) const {
        if (int const unit = readUnitEscape(text); unit >= 0)
            return mappedUnit(static_cast<unsigned>(unit), unitEscapeLength);
        // A byte beyond ASCII deliberately keeps the sign of a char: E9 is the unit FFE9.
        return mappedUnit(static_cast<unsigned short>(static_cast<signed char>(text[0])), 1);
    }

    Encoded encodeOne(auto text) const {
        unsigned const unit = text[0];
        return unit < 0x80 ? mappedCode(unit, 1, 1) : mappedCode(unitEscapeCode(unit), unitEscapeLength, 1);
    }
};

static_assert(Decodes<Utf16EscCodec> && Encodes<Utf16EscCodec>);

/// For texts with a length: bytes beyond ASCII are no characters, and the start of an escape at the end of a piece waits
/// for the rest.
struct StrictUtf16EscCodec : Utf16EscCodec {
    static constexpr bool encodesSurrogates = true;

    Decoded decodeOne(auto text) const {
        if (text[0] >= 0x80)
            return unmapped(1);
        Decoded found = Utf16EscCodec::decodeOne(text);
        unsigned const prefix = unitEscapePrefix(text);
        found.cutShort = prefix != 0 && prefix < unitEscapeLength && !text.has(prefix);
        return found;
    }
};

static_assert(DecodesPieces<StrictUtf16EscCodec> && EncodesSurrogates<StrictUtf16EscCodec>);

} // namespace vyn
