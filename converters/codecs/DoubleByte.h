#pragma once

#include "base/Surrogates.h"
#include "converters/codecs/MultibyteTables.h"
#include "converters/loops/Codec.h"

namespace vyn {

/// How the bytes of a double-byte set make characters, by its type table. No table of codes is needed to count them.
struct DoubleByteForm {
    using Element = unsigned char;

    unsigned char const* types;

    static constexpr bool ready() { return true; }

    bool isLead(unsigned char byte) const { return (types[byte] & 0x40) != 0; }
    bool isTrail(unsigned char byte) const { return (types[byte] & 0x80) != 0; }
    bool isPair(auto text) const { return isLead(text[0]) && text.has(1) && isTrail(text[1]); }

    Counted countOne(auto text) const { return {isPair(text) ? 2U : 1U, 1}; }

    /// Decodes the character at the start of `text`, of which `codec.lookUp(code, bytes)` tells what the set has. Of a lead
    /// byte without a trail byte only the lead byte is taken, and the source limit does not count after it.
    template <class Codec>
    Decoded decodeOne(auto text, Codec const& codec) const {
        if (!isLead(text[0]))
            return codec.lookUp(text[0], 1);
        if (!text.has(1) || !isTrail(text[1]))
            return unmappedUnlimited(1, !text.has(1));
        return codec.lookUp(text[0] * 256U + text[1], 2);
    }

    /// A code as its one or two bytes, 0 being none.
    static Encoded encoded(unsigned code, unsigned units) {
        return code != 0 ? mappedCode(code, code < 0x100 ? 1 : 2, units) : unmappedUnits(units);
    }
};

static_assert(CountsUnits<DoubleByteForm>);

/// A double-byte set within the Basic Multilingual Plane. Surrogates are looked up one by one and never mapped.
struct DoubleByteCodec : DoubleByteForm, DoubleByteVectors<MultibyteTables> {
    static constexpr unsigned maxUnitsPerElement = 1;
    static constexpr unsigned maxElementsPerUnit = 2;

    bool ready() const { return tables != nullptr; }

    Decoded lookUp(unsigned code, unsigned bytes) const {
        return lookedUpUnit(tables->forward.lookup(static_cast<unsigned short>(code)), bytes);
    }

    Decoded decodeOne(auto text) const { return DoubleByteForm::decodeOne(text, *this); }

    /// One byte and two alternate in real text, so a branch between them would cost more than the shifts.
    Decoded decodeAhead(Element const* at) const {
        bool const lead = isLead(at[0]);
        if (lead > isTrail(at[1])) // a lead byte and no trail byte, in one test
            return unmapped(1);
        unsigned const shift = lead ? 8 : 0;
        unsigned const code = (unsigned{at[0]} << shift) | (at[1] & ((1U << shift) - 1));
        return lookedUpUnit(tables->forward.lookup(static_cast<unsigned short>(code)), lead ? 2 : 1);
    }

    Encoded encodeOne(auto text) const { return encoded(tables->reverse.lookup(text[0]), 1); }

    bool keepsAscii() const { return tables->keepsAscii(); }
};

static_assert(DecodesAhead<DoubleByteCodec> && Encodes<DoubleByteCodec> && KeepsAscii<DoubleByteCodec>);
static_assert(DecodesVectors<DoubleByteCodec> && EncodesVectors<DoubleByteCodec>);

/// A double-byte set with characters beyond the Basic Multilingual Plane, which are surrogate pairs in UTF-16.
struct DoubleByteExCodec : DoubleByteForm, DoubleByteVectors<MultibyteExTables> {
    static constexpr unsigned maxUnitsPerElement = 2; // of a single byte with such a character
    static constexpr unsigned maxElementsPerUnit = 2;

    bool ready() const { return tables != nullptr; }

    Decoded lookUp(unsigned code, unsigned bytes) const {
        unsigned const value = tables->forward.lookup(static_cast<unsigned short>(code));
        if (value > maxScalarValue) // of a map of somebody's own: the lowest bits, as one unit
            return mappedUnit(value & maxBmpValue, bytes);
        return {value, bytes, value > maxBmpValue ? 2U : 1U, value != 0};
    }

    Decoded decodeOne(auto text) const { return DoubleByteForm::decodeOne(text, *this); }

    Encoded encodeOne(auto text) const {
        if (!isHighSurrogate(text[0]))
            return encoded(tables->reverse.lookup(text[0]), 1);
        if (!text.has(1) || !isLowSurrogate(text[1]))
            return unmappedUnits(1, !text.has(1));
        return encoded(tables->reverse.lookup(combineSurrogates(text[0], text[1])), 2);
    }

    /// A single byte counts one unit deliberately, whatever it decodes to.
    Counted countOne(auto text) const {
        if (!isPair(text))
            return {1, 1};
        return {2, decodeOne(text).units};
    }
};

static_assert(Decodes<DoubleByteExCodec> && Encodes<DoubleByteExCodec> && CountsUnits<DoubleByteExCodec>);
static_assert(DecodesVectors<DoubleByteExCodec> && EncodesVectors<DoubleByteExCodec>);

/// For texts with a length: a code that the table has is its character, also where the type table denies the trail byte,
/// so that all that is encoded can be decoded.
template <class Codec>
struct StrictDoubleByteCodec : Codec {
    Decoded decodeOne(auto text) const {
        if (this->isLead(text[0]) && text.has(1))
            if (Decoded const found = this->lookUp(text[0] * 256U + text[1], 2); found.mapped)
                return found;
        return Codec::decodeOne(text);
    }
};

static_assert(DecodesPieces<StrictDoubleByteCodec<DoubleByteCodec>> && EncodesPieces<DoubleByteCodec>);
static_assert(DecodesPieces<StrictDoubleByteCodec<DoubleByteExCodec>> && EncodesPieces<DoubleByteExCodec>);

} // namespace vyn
