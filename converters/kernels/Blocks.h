#pragma once

#include "base/CheckedReads.h"
#include "converters/kernels/HalfSubset.h"
#include "converters/kernels/PackingRows.h"

#include <cstring>

// What kernels share. To be included by the source of a level alone, after its vectors: everything is local to that, so
// that no function compiled for one processor is ever called on another.

namespace vyn {
namespace {

/// What kernels take at a time.
inline constexpr long blockBytes = 64;
inline constexpr long blockUnits = blockBytes / 2;
inline constexpr long blockVectors = blockBytes / vectorBytes;
inline constexpr long vectorUnits = vectorBytes / 2;

/// Below this a kernel takes no rest of a text that is shorter than a block.
inline constexpr long shortestRest = 12;

using ByteBlock = Bytes[blockVectors];
using UnitBlock = Units[blockVectors];

inline void loadBlock(ByteBlock& block, unsigned char const* at) {
    for (long i = 0; i < blockVectors; ++i)
        block[i] = load(at + i * vectorBytes);
}
inline void loadBlock(UnitBlock& block, unsigned short const* at) {
    for (long i = 0; i < blockVectors; ++i)
        block[i] = units(load(at + i * vectorUnits));
}

inline Bytes filled(unsigned char byte) {
    return Bytes{} + byte;
}

/// Each byte shifted by itself.
template <int Count>
Bytes shiftedUp(Bytes vector) {
    return bytes(units(vector) << Count) & static_cast<unsigned char>(0xFF << Count);
}
template <int Count>
Bytes shiftedDown(Bytes vector) {
    return bytes(units(vector) >> Count) & static_cast<unsigned char>(0xFF >> Count);
}

/// The highest bits of what `map` makes of each byte.
template <class Map>
std::uint64_t signsOf(ByteBlock const& block, Map map) {
    Bytes mapped[blockVectors];
    for (long i = 0; i < blockVectors; ++i)
        mapped[i] = map(block[i]);
    return signsOf(mapped);
}

/// A bit for each unit for which `test` gives all bits, not none.
template <class Test>
std::uint32_t bitsOf(UnitBlock const& block, Test test) {
    Bytes narrowed[blockVectors / 2];
    for (long i = 0; i < blockVectors / 2; ++i)
        narrowed[i] = narrow(test(block[2 * i]) >> 8, test(block[2 * i + 1]) >> 8);
    return static_cast<std::uint32_t>(signsOf(narrowed));
}

/// A mask of the first `count` positions, 1 to 64.
inline std::uint64_t firstBits(long count) {
    return ~std::uint64_t{0} >> (64 - count);
}

inline unsigned countOf(std::uint64_t mask) {
    return static_cast<unsigned>(__builtin_popcountll(mask));
}

/// Calls `store(lane)` for the lanes of both vectors in turns, in the order of what was interleaved into them.
template <class Store>
void forLanes(auto low, auto high, Store store) {
    store(laneOf<0>(low));
    store(laneOf<0>(high));
    if constexpr (vectorBytes == 32) {
        store(laneOf<1>(low));
        store(laneOf<1>(high));
    }
}

/// The last bytes of what is stored, a lane of them, for the end of a text: nothing may be stored behind that, and to store
/// it elsewhere and copy it would mean to wait for the stores.
struct LastLane {
    /// Adds the first `count` bytes of `packed`, 0 to 16.
    void append(Lane packed, unsigned long count) {
        static constexpr unsigned char none = 0x80; // looks up 0
        static constexpr unsigned char positions[3 * sizeof(Lane)] = {
            none, none, none, none, none, none, none, none, none, none, none, none, none, none, none, none,
            0,    1,    2,    3,    4,    5,    6,    7,    8,    9,    10,   11,   12,   13,   14,   15,
            none, none, none, none, none, none, none, none, none, none, none, none, none, none, none, none};
        lane = lookUp(lane, loadLane(positions + sizeof lane + count)) | lookUp(packed, loadLane(positions + count));
    }

    Lane lane = {};
};

/// Stores packed lanes one after the other, each with rubbish behind it. To `finish` tells where they end.
template <class Element>
struct LaneWriter {
    void operator()(Lane packed, unsigned long count) {
        storeLane(dst, packed);
        dst += count;
    }
    Element* finish() const { return dst; }

    Element* dst;
};

/// The same of a whole block, but with nothing behind the last one: what the last lanes become is stored together with what
/// stands before it. Any half of the lanes, in a row, becomes a whole lane at least.
template <class Element, int Lanes>
struct WholeBlockWriter {
    void operator()(Lane packed, unsigned long count) {
        constexpr int half = Lanes / 2;
        if (taken >= 2)
            last.append(packed, count * sizeof(Element));
        if (taken <= half)
            storeLane(dst, packed);
        dst += count;
        if (taken > half)
            storeLane(dst - sizeof(Lane) / sizeof(Element), last.lane);
        ++taken;
    }
    Element* finish() const { return dst; }

    Element* dst;
    LastLane last = {};
    int taken = 0;
};

/// Stores packed lanes up to `end` and nothing behind that, of which there is a lane at least.
template <class Element>
struct BoundedLaneWriter {
    static constexpr long laneElements = sizeof(Lane) / sizeof(Element);

    void operator()(Lane packed, unsigned long count) {
        auto const left = static_cast<unsigned long>(end - dst);
        count = count < left ? count : left;
        last.append(packed, count * sizeof(Element));
        auto* const whole = end - laneElements; // stored over in the end
        storeLane(dst < whole ? dst : whole, packed);
        dst += count;
    }
    Element* finish() const {
        storeLane(end - laneElements, last.lane);
        return end;
    }

    Element* dst;
    Element* end;
    LastLane last = {};
};

/// Copies some 100 bytes without a call.
inline void copyShort(void* to, void const* from, unsigned long count) {
    auto* const dst = static_cast<unsigned char*>(to);
    auto const* const src = static_cast<unsigned char const*>(from);
    constexpr unsigned long step = sizeof(Lane);
    if (count < step) {
        for (unsigned long i = 0; i < count; ++i)
            dst[i] = src[i];
        return;
    }
    for (unsigned long i = 0; i < count - step; i += step)
        storeLane(dst + i, loadLane(src + i));
    storeLane(dst + count - step, loadLane(src + count - step));
}

/// Whether so many bytes can be read at `at` if one can.
inline bool isWithinPage(void const* at, unsigned long bytes) {
    constexpr unsigned long page = 4096; // or more
    return reinterpret_cast<std::uintptr_t>(at) % page <= page - bytes;
}

/// The first `count` elements of a text, less than a block, and anything behind them: what is there in memory, where a block
/// can be read.
template <class Element>
class PartOfBlock {
public:
    PartOfBlock(Element const* at, long count) : m_at(at) {
        if (!readsAreChecked && isWithinPage(at, blockBytes))
            return;
        copyShort(m_copy, at, static_cast<unsigned long>(count) * sizeof(Element));
        m_at = m_copy;
    }

    Element const* elements() const { return m_at; }

private:
    Element const* m_at;
    Element m_copy[blockBytes / sizeof(Element)];
};

/// Makes all but the first `count` units zeros.
inline void keepFirst(UnitBlock& block, long count) {
    static constexpr struct Mask {
        constexpr Mask() {
            for (long i = 0; i < blockUnits; ++i)
                units[i] = 0xFFFF;
        }
        unsigned short units[2 * blockUnits] = {};
    } mask;
    for (long i = 0; i < blockVectors; ++i)
        block[i] &= units(load(mask.units + blockUnits - count + i * vectorUnits));
}

/// A lane of which those bytes are moved together that a row keeps.
struct PackedLane {
    /// By the row of the lowest eight bits of `mask`.
    PackedLane(Lane source, PackingRows const& rows, std::uint64_t mask) {
        constexpr std::uint64_t rowSize = sizeof rows.of[0];
        std::uint64_t const row = mask * rowSize & 0xFF * rowSize;
        lane = lookUp(source, loadLane(rows.of[row / rowSize]));
        bits = countOf(row);
    }

    Lane lane;
    unsigned bits; ///< That are set in those of the mask.
};

/// Writes the first byte of each unit, and the second where its bit in `two` is set.
template <class Writer>
unsigned char* writeOneOrTwoBytes(UnitBlock const& block, std::uint32_t two, Writer write) {
    auto const writeLane = [&](Lane lane) {
        PackedLane const packed(lane, oneOrTwoBytes, two);
        two >>= 8;
        write(packed.lane, 8 + packed.bits);
    };
#pragma GCC unroll 4
    for (Units const vector : block) {
        writeLane(laneOf<0>(vector));
        if constexpr (vectorBytes == 32)
            writeLane(laneOf<1>(vector));
    }
    return write.finish();
}

/// Not 0 for the bytes of the subset, if it is one of ASCII.
inline Bytes membersOf(HalfSubset const& subset, Bytes vector) {
    static constexpr unsigned char bitOfHigh[16] = {1, 2, 4, 8, 16, 32, 64, 128};
    return lookUp(loadRow(subset.ofLow), vector) & lookUp(loadRow(bitOfHigh), shiftedDown<4>(vector));
}

inline bool hasAnyOf(HalfSubset const& subset, Bytes vector) {
    return !subset.empty && !isZero(membersOf(subset, vector));
}

inline void widenTo(unsigned short* dst, Bytes vector) {
    store(dst, widenLow(vector));
    store(dst + vectorUnits, widenHigh(vector));
}

/// Stores a block of ASCII as units. False: it is none, or some of it is odd.
inline bool widenAscii(HalfSubset const& odd, unsigned char const* src, unsigned short* dst) {
    ByteBlock block;
    loadBlock(block, src);
    if (signsOf(block) != 0)
        return false;
    for (Bytes const vector : block)
        if (hasAnyOf(odd, vector))
            return false;
    for (long i = 0; i < blockVectors; ++i)
        widenTo(dst + i * vectorBytes, block[i]);
    return true;
}

/// The same the other way.
inline bool narrowAscii(HalfSubset const& odd, unsigned short const* src, unsigned char* dst) {
    UnitBlock block;
    loadBlock(block, src);
    Units all = {};
    for (Units const vector : block)
        all |= vector;
    if (!isZero(all & 0xFF80))
        return false;
    Bytes narrowed[blockVectors / 2];
    for (long i = 0; i < blockVectors / 2; ++i) {
        narrowed[i] = narrow(block[2 * i], block[2 * i + 1]);
        if (hasAnyOf(odd, narrowed[i]))
            return false;
    }
    for (long i = 0; i < blockVectors / 2; ++i)
        store(dst + i * vectorBytes, narrowed[i]);
    return true;
}

} // namespace
} // namespace vyn
