#pragma once

#include "converters/kernels/Blocks.h"
#include "converters/kernels/Kernels.h"

namespace vyn {
namespace {

// UTF-8 to UTF-16, without a branch on the mix of lengths in a block: for every byte the unit is computed that would end
// there, and those are kept that do.

/// What a stretch of a block is made of, the first byte of which begins a character.
struct Utf8Shape {
    bool regular;        ///< Sequences only, the last of which may be cut off by the end.
    bool ascii;          ///< Nothing else.
    bool pairs;          ///< There are sequences of four bytes.
    long end;            ///< Where the last whole sequence ends.
    std::uint64_t units; ///< The positions before it at which units end.
};

/// A mask of what may lead so many bytes.
template <unsigned Bytes>
std::uint64_t leadsOf(ByteBlock const& block) {
    static_assert(Bytes == 3 || Bytes == 4);
    constexpr unsigned char first = Bytes == 3 ? 0xE0 : 0xF0;
    return signsOf(block, [](auto vector) { return subtractSaturated(vector, filled(first - 0x80)); });
}

inline std::uint64_t trailsOf(ByteBlock const& block) {
    return signsOf(block, [](Bytes vector) { return bytes(reinterpret_cast<SignedBytes>(vector) < -0x40); });
}

/// Whether `test` gives all bits for a byte inside. It is given the one before, too.
template <class Test>
bool isAny(ByteBlock const& block, std::uint64_t inside, Test test) {
    Bytes found[blockVectors], all = {}, before = {};
    for (long i = 0; i < blockVectors; ++i) {
        found[i] = test(block[i], before);
        all |= found[i];
        before = block[i];
    }
    return !isZero(all) && (signsOf(found) & inside) != 0;
}

// Of sequences that are not well-formed by their second bytes, or whatever these are.

/// Those of two bytes are overlong behind C0 and C1.
inline bool hasIllFormedTwos(ByteBlock const& block, std::uint64_t inside) {
    return isAny(block, inside, [](Bytes vector, Bytes) { return bytes((vector & 0xFE) == 0xC0); });
}

/// Those of three bytes are overlong from E0 80 to E0 9F, and stand for surrogates from ED A0 on.
inline bool hasIllFormedThrees(ByteBlock const& block, std::uint64_t inside) {
    return isAny(block, inside, [](Bytes vector, Bytes before) {
        Bytes const lead = shiftedIn<1>(vector, before);
        Bytes const fromA0 = bytes(units(vector) << 2); // the highest bit of a trail byte
        return select(fromA0, bytes(lead == 0xED), bytes(lead == 0xE0));
    });
}

/// Those of four bytes are overlong from F0 80 to F0 8F, and stand for too much from F4 90 on.
inline bool hasIllFormedFours(ByteBlock const& block, std::uint64_t inside) {
    auto const below90 = [](Bytes trail) { return bytes(reinterpret_cast<SignedBytes>(trail) < -0x70); };
    Bytes doubtful = {}, before = {};
    for (Bytes const vector : block) {
        doubtful |= bytes(shiftedIn<1>(vector, before) == 0xF0) & below90(vector);
        doubtful |= subtractSaturated(vector, filled(0xF3));
        before = vector;
    }
    return !isZero(doubtful) && isAny(block, inside, [&](Bytes vector, Bytes previous) {
        Bytes const lead = shiftedIn<1>(vector, previous);
        return (bytes(lead == 0xF0) & below90(vector)) | (bytes(lead == 0xF4) & ~below90(vector)) | bytes(lead >= 0xF5);
    });
}

/// Where the first character of a block begins, the bytes of which are characters but for cut off ones at both ends.
inline long firstCharacterOf(unsigned char const* src) {
    ByteBlock block;
    loadBlock(block, src);
    return __builtin_ctzll(~trailsOf(block));
}

/// Of the positions `from` to `to` of the block at `src`.
template <Utf8Rules Rules>
Utf8Shape shapeOf(unsigned char const* src, long from = 0, long to = blockBytes) {
    ByteBlock block;
    loadBlock(block, src);
    std::uint64_t const inside = firstBits(to) >> from << from;
    std::uint64_t const higher = signsOf(block) & inside;
    if (higher == 0)
        return {true, true, false, to, inside};
    std::uint64_t const trails = trailsOf(block) & inside;
    std::uint64_t const leads = higher & ~trails;
    std::uint64_t const leads3 = leadsOf<3>(block) & inside;
    std::uint64_t const leads4 = leads3 != 0 ? leadsOf<4>(block) & inside : 0;

    bool regular = trails == ((leads << 1 | leads3 << 2 | leads4 << 3) & inside);
    if (Rules == Utf8Rules::strict && regular)
        regular = leads3 == 0 ? !hasIllFormedTwos(block, inside)
                              : (leads == leads3 || !hasIllFormedTwos(block, inside)) &&
                                    (leads3 == leads4 || !hasIllFormedThrees(block, inside)) &&
                                    (leads4 == 0 || !hasIllFormedFours(block, inside));
    // At most one of these leads a sequence that is cut off.
    auto const isSetBefore = [to](std::uint64_t mask, long count) {
        return static_cast<long>(mask >> (to - count) & 1);
    };
    long const end = to - isSetBefore(leads, 1) - 2 * isSetBefore(leads3, 2) - 3 * isSetBefore(leads4, 3);
    std::uint64_t const whole = inside & firstBits(end);
    return {regular, false, (leads4 & whole) != 0, end, whole & ~(leads | leads3 << 1)};
}

/// Writes the units that end at `kept` positions of the block at `src`.
template <bool Pairs, class Writer>
unsigned short* writeUnits(unsigned char const* src, std::uint64_t kept, Writer write) {
    Bytes before = {};
#pragma GCC unroll 4
    for (long i = 0; i < blockVectors; ++i) {
        // Seen from the end of a sequence.
        Bytes const last = load(src + i * vectorBytes);
        Bytes const second = shiftedIn<1>(last, before), third = shiftedIn<2>(last, before);
        Bytes const isHigher = bytes(reinterpret_cast<SignedBytes>(last) < 0);
        Bytes const isTrail = bytes(reinterpret_cast<SignedBytes>(second) < -0x40);
        Bytes low = (last & 0x7F) | (shiftedUp<6>(second) & isHigher);
        Bytes high = ((shiftedDown<2>(second) & 0x0F) | (shiftedUp<4>(third) & isTrail)) & isHigher;
        if constexpr (Pairs) {
            // The high surrogate ends at the third of four bytes: ten bits of the value, less 0x40.
            Bytes const bits = shiftedUp<2>(second) | (shiftedDown<4>(last) & 0x03);
            Bytes const endsHigh = subtractSaturated(third, filled(0x70));
            Bytes const endsLow = subtractSaturated(shiftedIn<3>(last, before), filled(0x70));
            low = select(endsHigh, bits + 0xC0, low);
            high = select(endsHigh, (third & 0x0F) + 0xD8 + bytes(bits < 0x40), high);
            high = select(endsLow, (shiftedDown<2>(second) & 0x03) | 0xDC, high);
        }
        forLanes(interleaveLow(low, high), interleaveHigh(low, high), [&](Lane lane) {
            PackedLane const packed(lane, unitsKept, kept);
            kept >>= 8;
            write(packed.lane, packed.bits);
        });
        before = last;
    }
    return write.finish();
}

/// Pairs are rare: what they need is kept out of the registers of other text.
template <class Writer>
[[gnu::noinline]] unsigned short* writePairs(unsigned char const* src, std::uint64_t kept, auto... at) {
    return writeUnits<true>(src, kept, Writer{at...});
}

/// By a writer made of `at`.
template <class Writer>
unsigned short* writeShape(unsigned char const* src, Utf8Shape const& shape, auto... at) {
    return shape.pairs ? writePairs<Writer>(src, shape.units, at...)
                       : writeUnits<false>(src, shape.units, Writer{at...});
}

/// Stores the units and rubbish behind them, which are together no more than there are bytes in a block.
inline unsigned short* storeUnits(unsigned char const* src, Utf8Shape const& shape, unsigned short* dst) {
    return writeShape<LaneWriter<unsigned short>>(src, shape, dst);
}

/// Stores the units of a whole block alone, of which all but the first few bytes are characters.
inline unsigned short* storeWhole(unsigned char const* src, Utf8Shape const& shape, unsigned short* dst) {
    return writeShape<WholeBlockWriter<unsigned short, blockBytes / 8>>(src, shape, dst);
}

/// Stores the units of part of a block alone.
inline unsigned short* storePart(unsigned char const* src, Utf8Shape const& shape, unsigned short* dst) {
    using Writer = BoundedLaneWriter<unsigned short>;
    unsigned const count = countOf(shape.units);
    if (count >= Writer::laneElements)
        return writeShape<Writer>(src, shape, dst, dst + count);
    unsigned short stored[blockBytes];
    storeUnits(src, shape, stored);
    copyShort(dst, stored, count * sizeof *dst);
    return dst + count;
}

inline unsigned short* widen(unsigned char const* src, unsigned short* dst) {
    for (long i = 0; i < blockBytes; i += vectorBytes)
        widenTo(dst + i, load(src + i));
    return dst + blockBytes;
}

/// The blocks of a text. By the lenient rules a pair raises the flag, as its continuation bytes would be read again.
template <Utf8Rules Rules>
inline BulkDecoded<unsigned char> decodeUtf8(unsigned char const* src, unsigned char const* end, unsigned short* dst) {
    auto const* const start = src;
    bool pairs = false;
    auto const took = [&](Utf8Shape const& shape, long before) {
        src += shape.end - before;
        pairs |= shape.pairs;
    };
    auto const done = [&] { return BulkDecoded<unsigned char>{src, dst, Rules == Utf8Rules::lenient && pairs}; };
    while (end - src >= blockBytes) {
        Utf8Shape shape = shapeOf<Rules>(src);
        // A block may be stored with rubbish behind it if the next one is sure to be stored over that.
        while (shape.regular && !shape.ascii && end - src - shape.end >= blockBytes) {
            Utf8Shape const next = shapeOf<Rules>(src + shape.end);
            if (!next.regular)
                break;
            dst = storeUnits(src, shape, dst);
            took(shape, 0);
            shape = next;
        }
        if (!shape.regular)
            return done();
        dst = shape.ascii ? widen(src, dst) : storeWhole(src, shape, dst);
        took(shape, 0);
    }
    long const rest = end - src;
    if (rest != 0 && end - start >= blockBytes) {
        // The end of a whole block, of which the characters before it are stored again.
        auto const* const block = end - blockBytes;
        Utf8Shape const shape = shapeOf<Rules>(block, firstCharacterOf(block));
        if (!shape.regular)
            return done();
        long const before = blockBytes - rest;
        dst = storeWhole(block, shape, dst - countOf(shape.units & firstBits(before)));
        took(shape, before);
    } else if (rest >= shortestRest) {
        PartOfBlock<unsigned char> const part(src, rest);
        Utf8Shape const shape = shapeOf<Rules>(part.elements(), 0, rest);
        if (!shape.regular)
            return done();
        dst = storePart(part.elements(), shape, dst);
        took(shape, 0);
    }
    return done();
}

/// The units of the whole sequences in the blocks of a text.
[[gnu::flatten]] inline BulkCounted<unsigned char> countUtf8Units(unsigned char const* src, unsigned char const* end) {
    unsigned long count = 0;
    while (end - src >= blockBytes) {
        Utf8Shape const shape = shapeOf<Utf8Rules::lenient>(src);
        if (!shape.regular)
            break;
        count += countOf(shape.units);
        src += shape.end;
    }
    return {src, count};
}

} // namespace
} // namespace vyn
