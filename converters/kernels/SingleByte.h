#pragma once

#include "converters/kernels/Blocks.h"
#include "converters/kernels/Kernels.h"
#include "converters/kernels/SingleByteRows.h"

namespace vyn {
namespace {

// Single-byte sets, a vector of bytes at a time. A table of 128 bytes is looked up in by eight rows of 16, of which the
// higher bits of the index choose one.

/// What stands in `table` at the lowest seven bits of each byte.
inline Bytes lookUpIn(unsigned char const (&table)[128], Bytes index) {
    Bytes const low = index & 0x0F;
    Bytes rows[8];
    for (long i = 0; i < 8; ++i)
        rows[i] = lookUp(loadRow(table + 16 * i), low);
    // Bits 4, 5 and 6 as the highest one.
    Bytes const bit4 = bytes(units(index) << 3), bit5 = bytes(units(index) << 2), bit6 = bytes(units(index) << 1);
    for (long i = 0; i < 4; ++i)
        rows[i] = select(bit4, rows[2 * i + 1], rows[2 * i]);
    rows[0] = select(bit5, rows[1], rows[0]);
    rows[2] = select(bit5, rows[3], rows[2]);
    return select(bit6, rows[2], rows[0]);
}

inline bool hasZero(Bytes vector) {
    return !isZero(bytes(vector == 0));
}

inline bool hasSigns(Bytes vector) {
    Bytes const vectors[] = {vector};
    return signsOf(vectors) != 0;
}

/// Calls `convert(position)` for each vector of `count` elements, the last of which may overlap the one before, as long as
/// it returns true. Returns the elements converted.
template <class Convert>
long forVectors(long count, Convert convert) {
    long done = 0;
    for (; count - done >= vectorBytes; done += vectorBytes)
        if (!convert(done))
            return done;
    return done != 0 && done != count && convert(count - vectorBytes) ? count : done;
}

/// False: not all bytes are mapped, or some of ASCII are odd.
inline bool decodeVector(SingleByteRows const& rows, unsigned char const* src, unsigned short* dst) {
    Bytes const vector = load(src);
    if (hasAnyOf(rows.oddBytes, vector))
        return false;
    if (!hasSigns(vector)) {
        widenTo(dst, vector);
        return true;
    }
    Bytes const low = select(vector, lookUpIn(rows.lowOfUnit, vector), vector);
    Bytes const high = select(vector, lookUpIn(rows.highOfUnit, vector), Bytes{});
    if (hasZero(low | high))
        return false;
    forLanes(interleaveLow(low, high), interleaveHigh(low, high), [&dst](Lane lane) {
        storeLane(dst, lane);
        dst += sizeof lane / sizeof *dst;
    });
    return true;
}

inline BulkDecoded<unsigned char> decodeSingleByte(SingleByteRows const& rows, unsigned char const* src,
                                                   unsigned char const* end, unsigned short* dst) {
    long const done = rows.isLatin1
                          ? forVectors(end - src, [&](long at) { return widenTo(dst + at, load(src + at)), true; })
                          : forVectors(end - src, [&](long at) { return decodeVector(rows, src + at, dst + at); });
    return {src + done, dst + done};
}

/// Units from anywhere, one by one. False: not all are mapped.
inline bool encodeScattered(SingleByteRows const& rows, unsigned short const* src, unsigned char* dst) {
    unsigned char found[vectorBytes];
    for (long i = 0; i < vectorBytes; ++i)
        found[i] = rows.byteOf[src[i]];
    Bytes const vector = load(found);
    if (hasZero(vector))
        return false;
    store(dst, vector);
    return true;
}

/// False: not all units are below `narrowEnd`, a power of two.
template <unsigned short narrowEnd>
bool narrowTo(unsigned char* dst, Units first, Units second) {
    if (!isZero((first | second) & static_cast<unsigned short>(-narrowEnd)))
        return false;
    store(dst, narrow(first, second));
    return true;
}

/// False: not all units are mapped, or some of ASCII are odd.
inline bool encodeVector(SingleByteRows const& rows, unsigned short const* src, unsigned char* dst) {
    Units const first = units(load(src)), second = units(load(src + vectorUnits));
    if (rows.oddUnits.empty && narrowTo<0x80>(dst, first, second))
        return true;
    auto const isHome = [&](Units vector) { return units((vector & 0xFF80) == rows.home); };
    auto const isElsewhere = [&](Units vector) { return units((vector & 0xFF80) != 0) & ~isHome(vector); };
    if (!isZero(isElsewhere(first) | isElsewhere(second)))
        return encodeScattered(rows, src, dst);
    // The place in the home, or ASCII, with a mark in the highest bit of what is at home.
    auto const place = [&](Units vector) { return (vector & 0x7F) | (isHome(vector) & 0x80); };
    Bytes const places = narrow(place(first), place(second));
    Bytes const found = select(places, lookUpIn(rows.byteOfHome, places), places);
    if (hasZero(found) || hasAnyOf(rows.oddUnits, places))
        return false;
    store(dst, found);
    return true;
}

[[gnu::flatten]] inline BulkEncoded<unsigned char>
encodeSingleByte(SingleByteRows const& rows, unsigned short const* src, unsigned short const* end, unsigned char* dst) {
    auto const encodeLatin1 = [&](long at) {
        return narrowTo<0x100>(dst + at, units(load(src + at)), units(load(src + at + vectorUnits)));
    };
    long const done = rows.isLatin1
                          ? forVectors(end - src, encodeLatin1)
                          : forVectors(end - src, [&](long at) { return encodeVector(rows, src + at, dst + at); });
    return {src + done, dst + done};
}

} // namespace
} // namespace vyn
