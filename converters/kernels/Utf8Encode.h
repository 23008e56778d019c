#pragma once

#include "converters/kernels/Blocks.h"
#include "converters/kernels/Kernels.h"

namespace vyn {
namespace {

// UTF-16 to UTF-8, by what the largest unit of a block needs: one byte for each, up to two or three, or pairs too.

enum class Utf16Kind { irregular, ascii, upToTwoBytes, upToThreeBytes, pairs };

/// What a block, which begins with a character, is made of.
struct Utf16Shape {
    Utf16Kind kind;
    long length = blockUnits; ///< Without the first half of a pair at its end.
};

inline Units isSurrogate(Units vector) {
    return units((vector & 0xF800) == 0xD800);
}

inline Utf16Shape shapeOf(unsigned short const* src) {
    UnitBlock block;
    loadBlock(block, src);
    Units all = {};
    Units surrogates = {};
    for (Units const vector : block) {
        all |= vector;
        surrogates |= isSurrogate(vector);
    }
    if (isZero(all & 0xFF80))
        return {Utf16Kind::ascii};
    if (isZero(all & 0xF800))
        return {Utf16Kind::upToTwoBytes};
    if (isZero(surrogates))
        return {Utf16Kind::upToThreeBytes};
    std::uint32_t const high = bitsOf(block, [](Units vector) { return units((vector & 0xFC00) == 0xD800); });
    std::uint32_t const low = bitsOf(block, [](Units vector) { return units((vector & 0xFC00) == 0xDC00); });
    if (low != high << 1)
        return {Utf16Kind::irregular};
    return {Utf16Kind::pairs, blockUnits - static_cast<long>(high >> (blockUnits - 1))};
}

inline unsigned char* storeAscii(UnitBlock const& block, unsigned char* dst) {
    for (long i = 0; i < blockVectors; i += 2)
        store(dst + i * vectorUnits, narrow(block[i], block[i + 1]));
    return dst + blockUnits;
}

inline unsigned char* storeUpToTwoBytes(UnitBlock const& block, unsigned char* dst) {
    auto const isLonger = [](Units vector) { return units(vector > 0x7F); };
    UnitBlock found;
    for (long i = 0; i < blockVectors; ++i) {
        Units const longer = block[i] >> 6 | (block[i] & 0x3F) << 8 | 0x80C0;
        found[i] = (longer & isLonger(block[i])) | (block[i] & ~isLonger(block[i]));
    }
    return storeOneOrTwoBytes(found, bitsOf(block, isLonger), dst);
}

/// A half of a pair becomes the two bytes that are its share of the four: the high one the first two.
inline Units bytesOfHalves(Units vector, Units before) {
    Units const bits = vector - 0xD7C0;       // of a high surrogate: those of the value from the tenth on
    Units const bitsBefore = before - 0xD7C0; // the two lowest of them belong to the third byte
    Units const first = bits >> 8 | (bits & 0xFC) << 6 | 0x80F0;
    Units const second = (bitsBefore & 0x03) << 4 | (vector >> 6 & 0x0F) | (vector & 0x3F) << 8 | 0x8080;
    Units const isHigh = units((vector & 0xFC00) == 0xD800);
    return (first & isHigh) | (second & ~isHigh);
}

template <bool Pairs>
unsigned char* storeUpToThreeBytes(UnitBlock const& block, unsigned char* dst) {
    Units before = {};
    for (Units const vector : block) {
        Units const isAscii = units(vector < 0x80), isShort = units(vector < 0x800);
        // The last two bytes of three. A sequence of two has another mark in the first of them; ASCII is the second.
        Units last = (vector >> 6 & 0x3F) | (vector & 0x3F) << 8 | 0x8080 | (isShort & 0x40);
        last = (vector << 8 & isAscii) | (last & ~isAscii);
        Units keepsOne = isAscii, keepsTwo = isShort;
        if constexpr (Pairs) {
            Units const isHalf = isSurrogate(vector);
            Units const halves = bytesOfHalves(vector, units(shiftedIn<2>(bytes(vector), bytes(before))));
            last = (halves & isHalf) | (last & ~isHalf);
            keepsTwo |= isHalf;
            before = vector;
        }
        Bytes const longer[] = {bytes(~((keepsOne & 0x00FF) | (keepsTwo & 0xFF00)))};
        std::uint64_t more = signsOf(longer);
        Units const first = vector >> 12 | 0xE0;
        forLanes(interleaveUnitsLow(last, first), interleaveUnitsHigh(last, first), [&](Lane lane) {
            PackedLane const packed(lane, oneToThreeBytes, more);
            more >>= 8;
            storeLane(dst, packed.lane);
            dst += 4 + packed.bits;
        });
    }
    return dst;
}

/// Stores the bytes of a regular block, and less than 16 bytes of rubbish after them. Returns where they end.
inline unsigned char* storeBytes(unsigned short const* src, Utf16Shape shape, unsigned char* dst) {
    UnitBlock block;
    loadBlock(block, src);
    switch (shape.kind) {
    case Utf16Kind::ascii:
        return storeAscii(block, dst);
    case Utf16Kind::upToTwoBytes:
        return storeUpToTwoBytes(block, dst);
    case Utf16Kind::upToThreeBytes:
        return storeUpToThreeBytes<false>(block, dst);
    default: // a high surrogate at the end, of which the low one follows, wrote two bytes too many
        return storeUpToThreeBytes<true>(block, dst) - 2 * (blockUnits - shape.length);
    }
}

/// Stores the bytes alone, without those of `padding` zeros at the end of the block.
inline unsigned char* storeExactly(unsigned short const* src, Utf16Shape shape, long padding, unsigned char* dst) {
    unsigned char stored[3 * blockUnits + sizeof(Lane)];
    auto const count = storeBytes(src, shape, stored) - stored - padding;
    copyShort(dst, stored, static_cast<unsigned long>(count));
    return dst + count;
}

/// One by one, up to a surrogate.
inline BulkEncoded<unsigned char> encodeFew(unsigned short const* src, unsigned short const* end, unsigned char* dst) {
    for (; src != end && (*src & 0xF800) != 0xD800; ++src) {
        unsigned const unit = *src;
        if (unit >= 0x800)
            *dst++ = static_cast<unsigned char>(0xE0 | unit >> 12);
        if (unit >= 0x80)
            *dst++ = static_cast<unsigned char>(unit >= 0x800 ? 0x80 | (unit >> 6 & 0x3F) : 0xC0 | unit >> 6);
        *dst++ = static_cast<unsigned char>(unit >= 0x80 ? 0x80 | (unit & 0x3F) : unit);
    }
    return {src, dst};
}

/// The blocks of a text.
[[gnu::flatten]] inline BulkEncoded<unsigned char> encodeUtf8(unsigned short const* src, unsigned short const* end,
                                                              unsigned char* dst) {
    auto const* const start = src;
    while (end - src >= blockUnits) {
        Utf16Shape shape = shapeOf(src);
        if (shape.kind == Utf16Kind::ascii) {
            dst = storeBytes(src, shape, dst);
            src += blockUnits;
            continue;
        }
        // A block may be stored with rubbish behind it if the next one is sure to be stored over that.
        while (shape.kind > Utf16Kind::ascii && end - src - shape.length >= blockUnits) {
            Utf16Shape const next = shapeOf(src + shape.length);
            if (next.kind == Utf16Kind::irregular)
                break;
            dst = storeBytes(src, shape, dst);
            src += shape.length;
            shape = next;
        }
        if (shape.kind == Utf16Kind::irregular)
            return {src, dst};
        if (shape.kind == Utf16Kind::ascii)
            continue;
        dst = storeExactly(src, shape, 0, dst);
        src += shape.length;
    }
    long const rest = end - src;
    if (rest < shortestRest && src != start)
        return encodeFew(src, end, dst);
    if (rest >= shortestRest) {
        PartOfBlock<unsigned short> const part(src, rest);
        Utf16Shape const shape = shapeOf(part.elements);
        if (shape.kind != Utf16Kind::irregular) {
            dst = storeExactly(part.elements, shape, blockUnits - rest, dst);
            src = end;
        }
    }
    return {src, dst};
}

/// The bytes that the blocks of a text become.
[[gnu::flatten]] inline BulkCounted<unsigned short> countUtf8Bytes(unsigned short const* src,
                                                                   unsigned short const* end) {
    unsigned long count = 0;
    while (end - src >= blockUnits) {
        Utf16Shape const shape = shapeOf(src);
        if (shape.kind == Utf16Kind::irregular)
            break;
        if (shape.kind == Utf16Kind::ascii) {
            count += blockUnits;
        } else {
            UnitBlock block;
            loadBlock(block, src);
            std::uint32_t const longer = bitsOf(block, [](Units vector) { return units(vector > 0x7F); });
            std::uint32_t const longest =
                bitsOf(block, [](Units vector) { return units(vector > 0x7FF) & ~isSurrogate(vector); });
            // A half of a pair at the end, which is not taken, is one of two bytes like others.
            count += static_cast<unsigned long>(blockUnits) + countOf(longer) + countOf(longest);
            count -= 2 * static_cast<unsigned long>(blockUnits - shape.length);
        }
        src += shape.length;
    }
    return {src, count};
}

} // namespace
} // namespace vyn
