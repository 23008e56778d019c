#pragma once

#include "converters/kernels/Blocks.h"
#include "converters/kernels/DoubleByteRows.h"
#include "converters/kernels/Kernels.h"

namespace vyn {
namespace {

// Sets of codes of one byte and of two. Where characters begin is found by vectors, what they are by look-ups in flat
// tables: first for many characters, as what they wait for is memory; what can't be looked up shows afterwards.

/// A few characters at first: the less a text has to give up where one is irregular, the less that costs.
inline constexpr long fewestAtOnce = 64;
inline constexpr long mostAtOnce = 512;

inline std::uint64_t leadsOf(DoubleByteRows const& rows, ByteBlock const& block) {
    if (rows.areLeads)
        return signsOf(block);
    return signsOf(block, [&](Bytes vector) { return bytes(membersOf(rows.leads, vector ^ 0x80) != 0); });
}

/// Where the characters of a block begin that are whole, the first of them at position `from`, and where the last one ends.
struct CharacterStarts {
    CharacterStarts(DoubleByteRows const& rows, ByteBlock const& block, long from) {
        std::uint64_t const inside = ~std::uint64_t{0} << from;
        std::uint64_t const leads = leadsOf(rows, block) & inside;
        // Of bytes in a row that could all lead, each second one trails. One addition carries along all the rows that begin
        // at odd positions, and so tells them from the others.
        constexpr std::uint64_t even = 0x5555555555555555;
        std::uint64_t const followers = leads << 1;
        std::uint64_t const oddRows = leads & ~even & ~followers;
        std::uint64_t const trails = (even ^ (leads + oddRows) << 1) & followers;
        std::uint64_t const cutOff = (leads & ~trails) >> (blockBytes - 1);
        end = blockBytes - static_cast<long>(cutOff);
        starts = inside & ~trails & ~(cutOff << (blockBytes - 1));
    }

    std::uint64_t starts;
    long end;
};

/// Stores the bytes of each character and the one after it, as an index into a flat table, and rubbish after them, but no
/// more than there are bytes in a block. Returns where the indices end.
inline unsigned short* storeIndices(ByteBlock const& block, std::uint64_t starts, unsigned short* indices) {
    for (long i = 0; i < blockVectors; ++i) {
        Bytes const second = shiftedOut<1>(block[i], i + 1 < blockVectors ? block[i + 1] : Bytes{});
        forLanes(interleaveLow(second, block[i]), interleaveHigh(second, block[i]), [&](Lane lane) {
            PackedLane const packed(lane, unitsKept, starts);
            starts >>= 8;
            storeLane(indices, packed.lane);
            indices += packed.bits;
        });
    }
    return indices;
}

/// How many of the first `count` units come before a zero one. There is room for a vector more.
inline long countBeforeZero(unsigned short* units, long count) {
    store(units + count, Bytes{} + 0xFF);
    for (long i = 0; i < count; i += vectorUnits) {
        Units const vector = vyn::units(load(units + i));
        if (isZero(vyn::units(vector == 0)))
            continue;
        while (units[i] != 0)
            ++i;
        return i < count ? i : count;
    }
    return count;
}

/// Some characters of a text, looked up together.
class CodeRun {
public:
    /// At least a block stands before `end`.
    CodeRun(DoubleByteRows const& rows, unsigned char const* end) : m_rows(rows), m_end(end) {}

    /// Takes the characters at `src` that are whole, of a block or of what is left, as the end of a block. Returns how long
    /// they are.
    long take(unsigned char const* src) {
        long const before = m_end - src < blockBytes ? blockBytes - (m_end - src) : 0;
        ByteBlock block;
        loadBlock(block, src - before);
        CharacterStarts const found(m_rows, block, before);
        m_count = storeIndices(block, found.starts, m_indices + m_count) - m_indices;
        return found.end - before;
    }

    /// Writes the units of the characters up to the first one that has none in the table.
    unsigned short* write(unsigned short* dst) {
#pragma GCC unroll 8
        for (long i = 0; i < m_count; ++i)
            m_units[i] = m_rows.unitOf[m_indices[i]];
        m_written = countBeforeZero(m_units, m_count);
        std::memcpy(dst, m_units, static_cast<unsigned long>(m_written) * sizeof *dst);
        return dst + m_written;
    }

    bool isWritten() const {
        return m_written == m_count;
    }

    /// How many bytes the characters were whose units were written.
    long writtenBytes() const {
        long length = m_written;
        for (long i = 0; i < m_written; ++i)
            length += m_rows.isLead[m_indices[i] >> 8] ? 1 : 0;
        return length;
    }

private:
    DoubleByteRows const& m_rows;
    unsigned char const* m_end;
    long m_count = 0, m_written = 0;
    /// The last block of a run may begin just before its end, and what is left of less than a block goes along.
    static constexpr long mostTaken = mostAtOnce + 2 * blockBytes;

    unsigned short m_indices[mostTaken];
    unsigned short m_units[mostTaken + vectorUnits];
};

inline BulkDecoded<unsigned char> decodeDoubleByte(DoubleByteRows const& rows, unsigned char const* src,
                                                   unsigned char const* end, unsigned short* dst) {
    if (end - src < blockBytes)
        return {src, dst};
    for (long atOnce = fewestAtOnce; src != end; atOnce = atOnce < mostAtOnce ? 2 * atOnce : atOnce) {
        while (end - src >= blockBytes && widenAscii(rows.oddBytes, src, dst)) {
            src += blockBytes;
            dst += blockBytes;
        }
        long const left = end - src;
        if (left == 0)
            break;
        if (left < blockBytes && widenAscii(rows.oddBytes, end - blockBytes, dst + left - blockBytes))
            return {end, dst + left};
        CodeRun run(rows, end);
        auto const* at = src;
        long taken = 1;
        // What is left of less than a block goes along.
        for (; taken != 0 && at != end && (at - src < atOnce || end - at < blockBytes); at += taken)
            taken = run.take(at);
        dst = run.write(dst);
        if (!run.isWritten())
            return {src + run.writtenBytes(), dst};
        src = at;
        if (taken == 0) // a lead byte without its second one
            break;
    }
    return {src, dst};
}

/// Writes the bytes of the first `count` codes, one or two each. What follows them is overwritten.
inline unsigned char* writeCodes(unsigned short* codes, long count, unsigned char* dst) {
    unsigned char written[2 * (mostAtOnce + blockUnits) + sizeof(Lane)];
    unsigned char* end = written;
    std::memset(codes + count, 0, blockBytes); // to the end of a block: a byte each
    long packed = 0;
    for (; packed < count; packed += blockUnits) {
        UnitBlock block;
        loadBlock(block, codes + packed);
        end = writeOneOrTwoBytes(block, bitsOf(block, [](Units vector) { return units(vector > 0xFF); }),
                                 LaneWriter<unsigned char>{end});
    }
    auto const length = end - written - (packed - count);
    std::memcpy(dst, written, static_cast<unsigned long>(length));
    return dst + length;
}

[[gnu::flatten]] inline BulkEncoded<unsigned char>
encodeDoubleByte(DoubleByteRows const& rows, unsigned short const* src, unsigned short const* end, unsigned char* dst) {
    if (end - src < shortestRest)
        return {src, dst};
    for (long atOnce = fewestAtOnce; src != end; atOnce = atOnce < mostAtOnce ? 2 * atOnce : atOnce) {
        while (end - src >= blockUnits && narrowAscii(rows.oddUnits, src, dst)) {
            src += blockUnits;
            dst += blockUnits;
        }
        unsigned short codes[mostAtOnce + blockUnits];
        long const count = end - src < atOnce ? end - src : atOnce;
#pragma GCC unroll 8
        for (long i = 0; i < count; ++i)
            codes[i] = rows.codeOf[src[i]];
        long const found = countBeforeZero(codes, count);
        dst = writeCodes(codes, found, dst);
        src += found;
        if (found != count)
            break;
    }
    return {src, dst};
}

} // namespace
} // namespace vyn
