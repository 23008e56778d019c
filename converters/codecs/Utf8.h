#pragma once

#include "base/Surrogates.h"
#include "converters/codecs/Utf8Sequence.h"
#include "converters/kernels/Kernels.h"
#include "converters/kernels/Utf8Blocks.h"
#include "converters/loops/Codec.h"

namespace vyn {

/// UTF-8, leniently: only the form of a sequence is tested. What the policy says to malformed bytes is not asked: they
/// are always replaced or skipped.
struct Utf8Codec {
    using Element = unsigned char;
    static constexpr unsigned maxUnitsPerElement = 1; // a pair's step takes one byte, and its strays become nothing
    static constexpr unsigned maxElementsPerUnit = 3; // four bytes are two units
    static constexpr bool replacesPairsOutOfRoom = true;

    /// Keeps escapes within the room and before the terminator. What fits is the same.
    bool boundedEscapes = false;

    static constexpr bool ready() { return true; }

    Decoded decodeOne(auto text) const {
        switch (oUTF8Bits[text[0] >> 4]) {
        case 0: // a stray continuation byte leaves nothing but the flag
            return {.value = 0, .elements = 1, .units = 0, .mapped = false};
        case 1:
            return mappedUnit(text[0], 1);
        case 2:
            return continues(text, 1) ? mappedUnit(twoByteValue(text), 2) : malformed(text, 1);
        case 3:
            return continues(text, 2) ? mappedUnit(threeByteValue(text), 3) : malformed(text, 2);
        default:
            if (!continues(text, 3))
                return malformed(text, 3);
            // The continuation bytes are deliberately not taken: read again as strays, they raise the flag.
            return {.value = fourByteValue(text), .elements = 1, .units = 2, .mapped = true};
        }
    }

    /// Unlike the conversion, ends at a stray continuation byte, and takes on trust what follows a lead byte.
    Counted countOne(Limited<Element> text) const {
        unsigned const length = oUTF8Bits[text[0] >> 4];
        return length <= text.left ? Counted{length, length == 4 ? 2U : 1U} : Counted{0, 0};
    }

    Encoded encodeOne(auto text) const {
        unsigned const unit = text[0];
        if (unit < 0x80)
            return mappedCode(unit, 1, 1);
        if (unit < 0x800)
            return mappedCode(twoByteCode(unit), 2, 1);
        if (!isHighSurrogate(unit))
            return mappedCode(threeByteCode(unit), 3, 1);
        if (!text.has(1) || !isLowSurrogate(text[1]))
            return unmappedUnits(1, !text.has(1));
        return mappedCode(fourByteCode(combineSurrogates(unit, text[1])), 4, 2);
    }

    /// Deliberately, an escape drops the unit after the surrogate, even the terminator: the text then goes on after it.
    /// And it is charged five of its six bytes, so that each one lets the text run one byte further.
    EscapeToll escapeToll(Terminated<unsigned short> text) const {
        if (!boundedEscapes)
            return {2, unitEscapeLength - 1};
        return {text.has(1) ? 2U : 1U, unitEscapeLength};
    }

    BulkCounted<Element> countVectors(Element const* src, Element const* end) const {
        return kernels.countLenientUtf8(src, end);
    }
    BulkCounted<unsigned short> countVectors(unsigned short const* src, unsigned short const* end) const {
        return kernels.countUtf8(src, end);
    }

    BulkDecoded<Element> decodeVectors(Element const* src, Element const* end, unsigned short* dst) const {
        return kernels.decodeLenientUtf8(src, end, dst).from(src, dst);
    }
    BulkEncoded<Element> encodeVectors(unsigned short const* src, unsigned short const* end, Element* dst) const {
        return kernels.encodeUtf8(src, end, dst);
    }
    BulkDecoded<Element> decodeBlocks(Element const* src, Element const* end, unsigned short* dst) const {
        return decodeUtf8Blocks<Utf8Rules::lenient>(src, end, dst);
    }
    BulkEncoded<Element> encodeBlocks(unsigned short const* src, unsigned short const* end, Element* dst) const {
        return encodeUtf8Blocks<Utf8Rules::lenient>(src, end, dst);
    }

private:
    static bool continues(auto text, unsigned trails) {
        for (unsigned i = 1; i <= trails; ++i)
            if (!text.has(i) || !isContinuation(text[i]))
                return false;
        return true;
    }

    /// Gives up the lead byte only, what follows is read again.
    static Decoded malformed(auto text, unsigned trails) {
        unsigned i = 1;
        while (i < trails && text.has(i) && isContinuation(text[i]))
            ++i;
        return unmapped(1, !text.has(i));
    }
};

static_assert(DecodesVectors<Utf8Codec> && EncodesVectors<Utf8Codec>);
static_assert(DecodesBlocks<Utf8Codec> && EncodesBlocks<Utf8Codec> && CountsUnits<Utf8Codec>);
static_assert(CountsVectors<Utf8Codec> && ReplacesPairsOutOfRoom<Utf8Codec> && TakesEscapeToll<Utf8Codec>);

/// For texts with a length: Unicode's well-formed sequences only. An ill-formed one is as long as its maximal subpart, the
/// bytes that could begin a well-formed one.
struct StrictUtf8Codec : Utf8Codec {
    static constexpr bool isLone(unsigned byte) { return byte < 0xC2 || byte > 0xF4; }
    static constexpr unsigned lostLone(unsigned byte) { return byte >> 7; }

    Decoded decodeOne(auto text) const {
        unsigned const lead = text[0];
        if (isLone(lead))
            return lostLone(lead) == 0 ? mappedUnit(lead, 1) : unmapped(1);
        unsigned const trails = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        // The second byte is what keeps overlong forms, surrogates and values above U+10FFFF out.
        unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        for (unsigned i = 1; i <= trails; ++i) {
            if (!text.has(i))
                return unmapped(i, true);
            if (text[i] < low || text[i] > high)
                return unmapped(i);
            low = 0x80;
            high = 0xBF;
        }
        if (trails == 3)
            return mappedScalar(fourByteValue(text), 4);
        return trails == 2 ? mappedUnit(threeByteValue(text), 3) : mappedUnit(twoByteValue(text), 2);
    }

    Encoded encodeOne(auto text) const {
        return isLowSurrogate(text[0]) ? unmappedUnits(1) : Utf8Codec::encodeOne(text);
    }

    BulkDecoded<Element> decodeVectors(Element const* src, Element const* end, unsigned short* dst) const {
        return kernels.decodeStrictUtf8(src, end, dst).from(src, dst);
    }
    BulkDecoded<Element> decodeBlocks(Element const* src, Element const* end, unsigned short* dst) const {
        return decodeUtf8Blocks<Utf8Rules::strict>(src, end, dst);
    }
    BulkEncoded<Element> encodeBlocks(unsigned short const* src, unsigned short const* end, Element* dst) const {
        return encodeUtf8Blocks<Utf8Rules::strict>(src, end, dst);
    }
};

static_assert(DecodesPieces<StrictUtf8Codec> && EncodesPieces<StrictUtf8Codec> && HasLoneElements<StrictUtf8Codec>);
static_assert(DecodesVectors<StrictUtf8Codec> && EncodesVectors<StrictUtf8Codec>);
static_assert(DecodesBlocks<StrictUtf8Codec> && EncodesBlocks<StrictUtf8Codec>);

} // namespace vyn
