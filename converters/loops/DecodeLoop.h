#pragma once

#include "base/Surrogates.h"
#include "converters/loops/CodecStep.h"

#include <vynulib/VynCharSetConverter.h>

#include <algorithm>
#include <cstring>

// The one loop from bytes to UTF-16, and the one that counts. A codec is a small object with the tables of its set:
//
//   static constexpr bool supplementary;          whether characters may need two units
//   static constexpr bool limitBehindMalformed;   whether the source limit is tested behind malformed bytes
//   bool ready() const;                           whether there are tables
//   Decoded decodeOne(unsigned char const*) const
//   Decoded decodeAhead(unsigned char const*) const
//                                                 optional: the same, where the byte behind the first can be read in any
//                                                 case
//   long decodeBlocks(unsigned char const* src, unsigned char const* end, unsigned short* dst) const
//                                                 optional: converts blocks of mapped one-byte characters that end by
//                                                 `end`, as many as follow each other; returns their characters
//
// decodeOne looks at a byte only when the one before it proved not to be the terminator, and never takes fewer bytes
// than its character has units.

namespace vyn {

struct DecodeCursor {
    unsigned char const* src;
    unsigned short* dst;
    unsigned char const* runEnd; // no terminator before it, and room for a unit for each byte up to it
    bool sawIllegal = false;
};

template <class Codec>
void writeDecoded(unsigned short*& dst, unsigned value) {
    if (Codec::supplementary && value > maxBmpValue) {
        *dst++ = highSurrogateOf(value);
        *dst++ = lowSurrogateOf(value);
    } else {
        *dst++ = static_cast<unsigned short>(value);
    }
}

template <class Codec>
Decoded decodeInRun(Codec const& codec, unsigned char const* src, unsigned char const* runEnd) {
    if constexpr (requires { codec.decodeAhead(src); })
        if (runEnd - src >= 2)
            return codec.decodeAhead(src);
    return codec.decodeOne(src);
}

/// The fast path: all that decodeText does while neither terminator nor room nor a source limit can end it.
/// With ILLCHAR_STOP it ends before the first character that can't be converted.
template <class Codec>
void decodeRun(Codec const& codec, DecodeCursor& at, unsigned long room, bool stops) {
    constexpr unsigned long runBytes = 4096; // a run stays in the first-level cache between its scan and its conversion
    constexpr long maxUnits = Codec::supplementary ? 2 : 1;
    if (at.src >= at.runEnd)
        at.runEnd = at.src + strnlen(reinterpret_cast<char const*>(at.src), std::min(room, runBytes));

    unsigned char const* src = at.src;
    unsigned short* dst = at.dst;
    bool sawIllegal = false;
    while (at.runEnd - src >= maxUnits) {
        if constexpr (requires { codec.decodeBlocks(src, at.runEnd, dst); }) {
            long const characters = codec.decodeBlocks(src, at.runEnd, dst);
            src += characters;
            dst += characters;
            if (src == at.runEnd)
                break;
        }
        Decoded found = decodeInRun(codec, src, at.runEnd);
        if (found.verdict != Verdict::Mapped) {
            if (stops)
                break;
            sawIllegal = true;
            found.value = replacementCharacter;
        }
        writeDecoded<Codec>(dst, found.value);
        src += found.bytes;
    }
    at.src = src;
    at.dst = dst;
    at.sawIllegal |= sawIllegal;
}

template <class Codec>
unsigned long decodeText(Codec const& codec, unsigned short* dst, void const* src, unsigned long dstUnits,
                         ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    if (!dst || !src)
        return 0;
    auto const* const start = static_cast<unsigned char const*>(src);
    DecodeCursor at{start, dst, start};
    auto const room = [&] { return dstUnits - static_cast<unsigned long>(at.dst - dst); };
    while (codec.ready() && room() != 0 && *at.src != 0) {
        if (maxSrc <= 0) {
            decodeRun(codec, at, room(), op == ILLCHAR_STOP);
            if (room() == 0 || *at.src == 0)
                break;
        }
        Decoded found = codec.decodeOne(at.src);
        if (found.verdict != Verdict::Mapped) {
            at.sawIllegal = true;
            if (op == ILLCHAR_STOP)
                break;
            found.value = replacementCharacter;
        }
        if (Codec::supplementary && found.value > maxBmpValue && room() < 2)
            break;
        writeDecoded<Codec>(at.dst, found.value);
        at.src += found.bytes;
        bool const limited = maxSrc > 0 && (Codec::limitBehindMalformed || found.verdict != Verdict::Malformed);
        if (limited && at.src - start >= maxSrc)
            break;
    }
    *at.dst = 0;
    if (illegal)
        *illegal = at.sawIllegal;
    return static_cast<unsigned long>(at.dst - dst);
}

/// Adds up what `countOne(at, bytesLeft)` finds, up to the terminator or to `len` bytes.
template <class CountOne>
unsigned long countUnits(void const* src, unsigned long len, CountOne countOne) {
    if (!src)
        return 0;
    auto const* at = static_cast<unsigned char const*>(src);
    if (len == static_cast<unsigned long>(-1))
        len = std::strlen(static_cast<char const*>(src));
    unsigned long units = 0;
    while (len != 0 && *at != 0) {
        Counted const found = countOne(at, len);
        if (found.bytes == 0)
            break;
        units += found.units;
        at += found.bytes;
        len -= found.bytes;
    }
    return units;
}

/// Counts what the bytes decode to. The end of the counted bytes cuts a character off as the terminator would.
template <class Codec>
unsigned long countDecoded(Codec const& codec, void const* src, unsigned long len) {
    if (!codec.ready())
        return 0;
    return countUnits(src, len, [&codec](unsigned char const* at, unsigned long bytesLeft) {
        constexpr unsigned long maxBytes = 4;
        unsigned char tail[maxBytes + 1] = {};
        if (bytesLeft < maxBytes) {
            std::memcpy(tail, at, strnlen(reinterpret_cast<char const*>(at), bytesLeft));
            at = tail;
        }
        Decoded const found = codec.decodeOne(at);
        return Counted{found.bytes, found.verdict == Verdict::Mapped && found.value > maxBmpValue ? 2U : 1U};
    });
}

} // namespace vyn
