#pragma once

#include "base/Surrogates.h"
#include "converters/codecs/Utf8Sequence.h"
#include "converters/kernels/AsciiRun.h"
#include "converters/kernels/Kernels.h"

namespace vyn {

/// Four bytes at once, the first in the highest eight bits, to test a whole sequence by one mask.
inline std::uint32_t headOf(unsigned char const* at) {
    return std::uint32_t{at[0]} << 24 | std::uint32_t{at[1]} << 16 | std::uint32_t{at[2]} << 8 | at[3];
}
constexpr bool isTwoByteHead(std::uint32_t head) {
    return (head & 0xE0C00000) == 0xC0800000;
}
constexpr bool isThreeByteHead(std::uint32_t head) {
    return (head & 0xF0C0C000) == 0xE0808000;
}
constexpr bool isFourByteHead(std::uint32_t head) {
    return (head & 0xF0C0C0C0) == 0xF0808080;
}

constexpr bool isStrict(unsigned value, unsigned bytes) {
    if (bytes == 2)
        return value >= 0x80;
    if (bytes == 4)
        return value > maxBmpValue && value <= maxScalarValue;
    // Two of the 32 blocks of 0x800 values: overlong forms and surrogates. One test for both.
    constexpr unsigned refused = 1U << 0 | 1U << (0xD800 >> 11);
    return (refused >> (value >> 11) & 1) == 0;
}

/// Four sequences of two bytes, in one word, become four units. Returns the sequences that it took, in fours.
template <Utf8Rules Rules>
long decodeTwoByteBlocks(unsigned char const* src, unsigned char const* end, unsigned short* dst) {
    long taken = 0;
    for (; end - src - 2 * taken >= 8; taken += 4) {
        std::uint64_t const bytes = wordAt(src + 2 * taken);
        if ((bytes & 0xC0E0 * inEachUnit) != 0x80C0 * inEachUnit)
            break;
        // C0 or C1, which has no bit of 1E: 1 can't be subtracted from it.
        if (Rules == Utf8Rules::strict && (((bytes & 0x1E * inEachUnit) - inEachUnit) & 0x8000 * inEachUnit) != 0)
            break;
        std::uint64_t const units = (bytes & 0x1F * inEachUnit) << 6 | (bytes >> 8 & 0x3F * inEachUnit);
        std::memcpy(dst + taken, &units, sizeof units);
    }
    return taken;
}

/// Writes the four bytes of a code, the first of them in its highest eight bits.
inline void writeFourBytes(unsigned char* dst, std::uint32_t code) {
    code = __builtin_bswap32(code);
    std::memcpy(dst, &code, sizeof code);
}

/// Writes a fourth byte too, which the next character or a terminator is written over.
inline unsigned char* writeThreeBytes(unsigned char* dst, unsigned unit) {
    std::uint32_t const bytes = 0x8080E0 | unit >> 12 | (unit << 2 & 0x3F00) | (unit << 16 & 0x3F0000);
    std::memcpy(dst, &bytes, sizeof bytes);
    return dst + 3;
}

/// Whether all four units of a word become three bytes each.
template <Utf8Rules Rules>
constexpr bool areThreeByteUnits(std::uint64_t units) {
    constexpr std::uint64_t surrogateBits = Rules == Utf8Rules::strict ? 0xF800 : 0xFC00;
    return !hasZeroUnit(units & 0xF800 * inEachUnit) &&
           !hasZeroUnit((units & surrogateBits * inEachUnit) ^ 0xD800 * inEachUnit);
}

/// Four units below 0x800, in one word: ASCII and others alternate in real text, so there is no branch between them.
inline unsigned char* writeShortUnits(unsigned char* dst, std::uint64_t units) {
    for (int i = 0; i < 4; ++i, units >>= 16) {
        unsigned const unit = static_cast<unsigned short>(units);
        bool const ascii = unit < 0x80;
        unsigned const twoBytes = 0x80C0 | unit >> 6 | (unit & 0x3F) << 8;
        auto const bytes = static_cast<unsigned short>(ascii ? unit : twoBytes);
        std::memcpy(dst, &bytes, sizeof bytes);
        dst += ascii ? 1 : 2;
    }
    return dst;
}

/// Takes at least one unit below 0x800, and those that follow it a block at a time.
inline void encodeShortRun(unsigned short const*& src, unsigned short const* end, unsigned char*& dst) {
    long const ascii = moveAsciiBlocks(src, end, dst);
    src += ascii;
    dst += ascii;
    for (; end - src >= 4 && (wordAt(src) & 0xF800 * inEachUnit) == 0; src += 4)
        dst = writeShortUnits(dst, wordAt(src));
    while (src != end && *src < 0x80)
        *dst++ = static_cast<unsigned char>(*src++);
    if (src != end && *src < 0x800) {
        unsigned const code = twoByteCode(*src++);
        *dst++ = static_cast<unsigned char>(code >> 8);
        *dst++ = static_cast<unsigned char>(code);
    }
}

/// Decodes sequences that end before the last three bytes of [src, end), up to the first irregular one. By the lenient
/// rules a pair raises the flag: it leaves room for two units more, so the literal path would read its continuation bytes
/// again.
template <Utf8Rules Rules>
[[gnu::always_inline]] inline BulkDecoded<unsigned char>
decodeUtf8Blocks(unsigned char const* src, unsigned char const* end, unsigned short* dst) {
    constexpr bool strict = Rules == Utf8Rules::strict;
    bool sawIllegal = false;
    while (src < end) {
        if (*src < 0x80) {
            if (end - src > 1 && src[1] < 0x80) { // no mere space between words of another script
                long const moved = moveAsciiBlocks(src, end, dst);
                src += moved;
                dst += moved;
            }
            while (src < end && *src < 0x80)
                *dst++ = *src++;
            continue;
        }
        if (end - src < 4)
            break;
        std::uint32_t const head = headOf(src);
        if (isTwoByteHead(head)) {
            unsigned const value = twoByteValue(src);
            if (strict && !isStrict(value, 2))
                break;
            *dst++ = static_cast<unsigned short>(value);
            src += 2;
            long const more = decodeTwoByteBlocks<Rules>(src, end, dst);
            src += 2 * more;
            dst += more;
        } else if (isThreeByteHead(head)) {
            unsigned const value = threeByteValue(src);
            if (strict && !isStrict(value, 3))
                break;
            *dst++ = static_cast<unsigned short>(value);
            src += 3;
        } else if (isFourByteHead(head)) {
            unsigned const value = fourByteValue(src);
            if (strict && ((src[0] & 0x08) != 0 || !isStrict(value, 4)))
                break;
            *dst++ = highSurrogateOf(value);
            *dst++ = lowSurrogateOf(value);
            src += 4;
            sawIllegal = !strict;
        } else {
            break;
        }
    }
    return {src, dst, sawIllegal};
}

/// Encodes [src, end) up to the first high surrogate whose low one is not in it, by the strict rules up to any surrogate
/// without its other half. A store may reach one byte past the character, where a terminator will stand at the latest.
template <Utf8Rules Rules>
[[gnu::always_inline]] inline BulkEncoded<unsigned char>
encodeUtf8Blocks(unsigned short const* src, unsigned short const* end, unsigned char* dst) {
    while (src != end) {
        unsigned const unit = *src;
        if (unit < 0x800) {
            encodeShortRun(src, end, dst);
        } else if (Rules == Utf8Rules::strict ? !isSurrogate(unit) : !isHighSurrogate(unit)) {
            dst = writeThreeBytes(dst, *src++);
            for (; end - src >= 4 && areThreeByteUnits<Rules>(wordAt(src)); src += 4)
                for (int i = 0; i < 4; ++i)
                    dst = writeThreeBytes(dst, src[i]);
        } else if (isHighSurrogate(unit) && end - src >= 2 && isLowSurrogate(src[1])) {
            writeFourBytes(dst, fourByteCode(combineSurrogates(unit, src[1])));
            dst += 4;
            src += 2;
        } else {
            break;
        }
    }
    return {src, dst};
}

} // namespace vyn
