#pragma once

#include "base/Surrogates.h"
#include "base/UnitEscape.h"
#include "base/UnitScan.h"
#include "converters/loops/CodecStep.h"

#include <vynulib/VynCharSetConverter.h>

#include <algorithm>

// The one loop from UTF-16 to bytes, and the one that counts. Beside the tables of its set a codec has
//
//   static constexpr bool pairsSurrogates;        whether it looks at the unit behind a high surrogate
//   bool ready() const;                           whether there are tables
//   Encoded encodeOne(unsigned short const*) const
//   long encodeBlocks(unsigned short const* src, unsigned short const* end, unsigned char* dst) const
//                                                 optional: converts blocks of units mapped to one byte that end by `end`,
//                                                 as many as follow each other; returns their units

namespace vyn {

inline void writeCode(unsigned char* dst, unsigned code, unsigned bytes) {
    if (bytes > 2) {
        for (unsigned i = 0; i < bytes - 2; ++i)
            dst[i] = static_cast<unsigned char>(code >> 8 * (bytes - 1 - i));
        dst += bytes - 2;
        bytes = 2;
    }
    // No branch between one byte and two, which alternate in real text: one byte is written twice.
    dst[0] = static_cast<unsigned char>(code >> 8 * (bytes - 1));
    dst[bytes - 1] = static_cast<unsigned char>(code);
}

/// Writes what stands for `units` source units that can't be converted: an escape each, or one "?" for all.
/// Returns the bytes written, 0 where they do not fit.
inline unsigned long writeUnconvertible(unsigned char* dst, unsigned long room, unsigned short const* src,
                                        unsigned units, ILLCHAR_OPTYPE op) {
    if (op != ILLCHAR_ESCAPE) {
        *dst = replacementByte;
        return 1;
    }
    if (room < units * unitEscapeLength)
        return 0;
    for (unsigned i = 0; i < units; ++i)
        writeUnitEscape(dst + i * unitEscapeLength, src[i]);
    return units * unitEscapeLength;
}

template <class Codec>
unsigned long encodeText(Codec const& codec, void* dst, unsigned short const* src, unsigned long dstCap,
                         ILLCHAR_OPTYPE op, bool* illegal) {
    if (!dst || !src)
        return 0;
    auto* const start = static_cast<unsigned char*>(dst);
    auto* out = start;
    bool sawIllegal = false;
    unsigned long room = dstCap;
    constexpr unsigned long runUnits = 2048; // a run stays in the first-level cache between its scan and its conversion
    [[maybe_unused]] unsigned short const* runEnd = src; // no terminator before it
    while (codec.ready() && room != 0 && *src != 0) {
        if constexpr (requires { codec.encodeBlocks(src, runEnd, out); }) {
            if (src >= runEnd)
                runEnd = src + unitLength(src, std::min(room, runUnits));
            auto const runLength = static_cast<unsigned long>(runEnd - src);
            auto const bytes =
                static_cast<unsigned long>(codec.encodeBlocks(src, src + std::min(room, runLength), out));
            src += bytes;
            out += bytes;
            room -= bytes;
            if (room == 0 || *src == 0)
                break;
        }
        Encoded const found = codec.encodeOne(src);
        if (found.verdict == Verdict::End)
            break;
        unsigned long written = found.bytes;
        if (found.verdict == Verdict::Mapped) {
            if (found.bytes > room)
                break;
            writeCode(out, found.code, found.bytes);
        } else {
            sawIllegal = true;
            if (op == ILLCHAR_STOP)
                break;
            written = writeUnconvertible(out, room, src, found.units, op);
            if (written == 0)
                break;
        }
        out += written;
        room -= written;
        src += found.units;
    }
    *out = 0;
    if (illegal)
        *illegal = sawIllegal;
    return static_cast<unsigned long>(out - start);
}

/// Adds up the bytes that `codec` needs, a "?" for each character that it can't convert, up to the zero unit or to
/// `len` units. Where the codec pairs surrogates, a high one at the end of either has nothing to be paired with and
/// ends the count.
template <class Codec>
unsigned long countBytes(Codec const& codec, unsigned short const* src, unsigned long len) {
    if (!src || !codec.ready())
        return 0;
    unsigned long bytes = 0;
    while (len != 0 && *src != 0) {
        if (Codec::pairsSurrogates && isHighSurrogate(*src) && (len == 1 || src[1] == 0))
            break;
        Encoded const found = codec.encodeOne(src);
        if (found.verdict == Verdict::End)
            break;
        bytes += found.verdict == Verdict::Mapped ? found.bytes : 1;
        src += found.units;
        len -= found.units;
    }
    return bytes;
}

} // namespace vyn
