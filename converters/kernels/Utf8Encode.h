#pragma once

#include "converters/kernels/Kernels.h"
#include "converters/kernels/Pairs.h"

namespace vyn {
namespace {

// UTF-16 to UTF-8, by what the largest unit of a block needs: one byte for each, up to two or three, or pairs too.

enum class Utf16Kind { irregular, ascii, upToTwoBytes, upToThreeBytes, pairs };

/// What a block, which begins with a character, is made of.
struct Utf16Shape {
    Utf16Kind kind;
    long length = blockUnits; ///< Without the first half of a pair at its end.
};

inline bool isAscii(UnitBlock const& block) {
    Units all = {};
    for (Units const vector : block)
        all |= vector;
    return isZero(all & 0xFF80);
}

/// Of any block, which may be ASCII.
inline Utf16Shape longerShapeOf(UnitBlock const& block) {
    Units all = {};
    for (Units const vector : block)
        all |= vector;
    if (isZero(all & 0xF800))
        return {Utf16Kind::upToTwoBytes};
    if (!hasSurrogates(block))
        return {Utf16Kind::upToThreeBytes};
    long const length = lengthOfPairs(block);
    return length < 0 ? Utf16Shape{Utf16Kind::irregular} : Utf16Shape{Utf16Kind::pairs, length};
}

inline Utf16Shape shapeOf(UnitBlock const& block) {
    return isAscii(block) ? Utf16Shape{Utf16Kind::ascii} : longerShapeOf(block);
}

inline Units isLonger(Units vector) {
    return units(vector > 0x7F);
}
inline Units isLongest(Units vector) {
    return units(vector > 0x7FF) & ~isSurrogate(vector);
}

template <class Writer>
unsigned char* writeAscii(UnitBlock const& block, Writer write) {
    for (long i = 0; i < blockVectors; i += 2) {
        Bytes const narrowed = narrow(block[i], block[i + 1]);
        write(laneOf<0>(narrowed), sizeof(Lane));
        if constexpr (vectorBytes == 32)
            write(laneOf<1>(narrowed), sizeof(Lane));
    }
    return write.finish();
}

template <class Writer>
unsigned char* writeUpToTwoBytes(UnitBlock const& block, Writer write) {
    UnitBlock found;
    for (long i = 0; i < blockVectors; ++i) {
        Units const longer = block[i] >> 6 | (block[i] & 0x3F) << 8 | 0x80C0;
        found[i] = (longer & isLonger(block[i])) | (block[i] & ~isLonger(block[i]));
    }
    return writeOneOrTwoBytes(found, bitsOf(block, isLonger), write);
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

template <bool Pairs, class Writer>
unsigned char* writeUpToThreeBytes(UnitBlock const& block, Writer write) {
    Units before = {};
#pragma GCC unroll 4
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
            write(packed.lane, 4 + packed.bits);
        });
    }
    return write.finish();
}

/// Of a regular block. A high surrogate at its end, of which the low one follows, becomes two bytes too.
template <class Writer>
unsigned char* writeBytes(UnitBlock const& block, Utf16Kind kind, Writer write) {
    switch (kind) {
    case Utf16Kind::ascii:
        return writeAscii(block, write);
    case Utf16Kind::upToTwoBytes:
        return writeUpToTwoBytes(block, write);
    case Utf16Kind::upToThreeBytes:
        return writeUpToThreeBytes<false>(block, write);
    default:
        return writeUpToThreeBytes<true>(block, write);
    }
}

/// Stores the bytes of the units that the shape takes, and less than 20 bytes of rubbish behind them.
inline unsigned char* storeBytes(unsigned short const* src, Utf16Shape shape, unsigned char* dst) {
    UnitBlock block;
    loadBlock(block, src);
    return writeBytes(block, shape.kind, LaneWriter<unsigned char>{dst}) - 2 * (blockUnits - shape.length);
}

/// How many bytes become of the units of a regular block that `which` chooses.
inline unsigned countBytes(UnitBlock const& block, std::uint64_t which) {
    return countOf(which) + countOf(bitsOf(block, isLonger) & which) + countOf(bitsOf(block, isLongest) & which);
}

/// Stores the bytes of all units of a regular block alone.
inline unsigned char* storeWhole(UnitBlock const& block, Utf16Kind kind, unsigned char* dst) {
    switch (kind) {
    case Utf16Kind::ascii:
        return writeAscii(block, LaneWriter<unsigned char>{dst});
    case Utf16Kind::upToTwoBytes:
        return writeUpToTwoBytes(block, WholeBlockWriter<unsigned char, blockUnits / 8>{dst});
    default:
        return writeBytes(block, kind, WholeBlockWriter<unsigned char, blockUnits / 4>{dst});
    }
}

/// Stores the bytes of the first `count` units alone, at least 6 of them.
inline unsigned char* storePart(UnitBlock const& block, Utf16Shape shape, long count, unsigned char* dst) {
    using Writer = BoundedLaneWriter<unsigned char>;
    unsigned const bytes = countBytes(block, firstBits(count));
    if (bytes >= Writer::laneElements)
        return writeBytes(block, shape.kind, Writer{dst, dst + bytes});
    unsigned char stored[blockUnits + sizeof(Lane)];
    writeBytes(block, shape.kind, LaneWriter<unsigned char>{stored});
    copyShort(dst, stored, bytes);
    return dst + bytes;
}

/// Of so many units behind a block, storing them one by one is faster.
inline constexpr long fewUnits = 4;

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

/// Blocks of ASCII between others are taken as these, whose form does for them too: which comes next would often be guessed
/// wrong. After so many in a row they are text of their own.
inline constexpr long asciiText = 4;

/// The blocks of a text.
[[gnu::flatten]] inline BulkEncoded<unsigned char> encodeUtf8(unsigned short const* src, unsigned short const* end,
                                                              unsigned char* dst) {
    auto const* const start = src;
    while (end - src >= blockUnits) {
        UnitBlock block;
        loadBlock(block, src);
        if (isAscii(block)) {
            dst = writeAscii(block, LaneWriter<unsigned char>{dst});
            src += blockUnits;
            continue;
        }
        Utf16Shape shape = longerShapeOf(block);
        // A block may be stored with rubbish behind it if the next one is sure to be stored over that.
        long asciiBlocks = 0;
        while (shape.kind != Utf16Kind::irregular && asciiBlocks < asciiText &&
               end - src - shape.length >= blockUnits) {
            loadBlock(block, src + shape.length);
            Utf16Shape const next = longerShapeOf(block);
            if (next.kind == Utf16Kind::irregular)
                break;
            asciiBlocks = isAscii(block) ? asciiBlocks + 1 : 0;
            dst = storeBytes(src, shape, dst);
            src += shape.length;
            shape = next;
        }
        if (shape.kind == Utf16Kind::irregular)
            return {src, dst};
        loadBlock(block, src);
        dst = shape.length == blockUnits ? storeWhole(block, shape.kind, dst)
                                         : storePart(block, shape, shape.length, dst);
        src += shape.length;
    }
    long const rest = end - src;
    if (rest > fewUnits && src != start) {
        // The end of a whole block, of which the units before it are stored again.
        UnitBlock block;
        loadBlock(block, end - blockUnits);
        Utf16Shape const shape = shapeOf(block);
        if (shape.kind != Utf16Kind::irregular && shape.length == blockUnits)
            return {end, storeWhole(block, shape.kind, dst - countBytes(block, firstBits(blockUnits - rest)))};
    }
    if (rest < shortestRest)
        return encodeFew(src, end, dst);
    PartOfBlock<unsigned short> const part(src, rest);
    UnitBlock block;
    loadBlock(block, part.elements());
    keepFirst(block, rest);
    Utf16Shape const shape = shapeOf(block);
    if (shape.kind == Utf16Kind::irregular)
        return {src, dst};
    return {end, storePart(block, shape, rest, dst)};
}

/// The bytes that the blocks of a text become.
[[gnu::flatten]] inline BulkCounted<unsigned short> countUtf8Bytes(unsigned short const* src,
                                                                   unsigned short const* end) {
    unsigned long count = 0;
    while (end - src >= blockUnits) {
        UnitBlock block;
        loadBlock(block, src);
        Utf16Shape const shape = shapeOf(block);
        if (shape.kind == Utf16Kind::irregular)
            break;
        count += shape.kind == Utf16Kind::ascii ? blockUnits : countBytes(block, firstBits(shape.length));
        src += shape.length;
    }
    return {src, count};
}

} // namespace
} // namespace vyn
