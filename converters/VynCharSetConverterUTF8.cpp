#include <vynulib/VynCharSetConverterUTF8.h>

#include "base/Surrogates.h"
#include "converters/Utf8Encoder.h"
#include "converters/kernels/AsciiRun.h"
#include "converters/loops/CodecStep.h"
#include "converters/loops/EncodeLoop.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

/// Length of the sequence that a byte starts, by its high four bits; 0 for a continuation byte.
constexpr unsigned oUTF8Bits[16] = {1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 0, 2, 2, 3, 4};

constexpr bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

constexpr bool areContinuations(unsigned char const* at, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        if (!isContinuation(at[i]))
            return false;
    return true;
}

// Only the form of a sequence is tested: overlong forms, surrogates and values above U+10FFFF pass. C0 80 is a zero
// unit.
constexpr unsigned twoByteValue(unsigned char const* at) {
    return (at[0] & 0x1FU) << 6 | (at[1] & 0x3FU);
}

constexpr unsigned threeByteValue(unsigned char const* at) {
    return (at[0] & 0x0FU) << 12 | (at[1] & 0x3FU) << 6 | (at[2] & 0x3FU);
}

constexpr unsigned fourByteValue(unsigned char const* at) {
    return (at[0] & 0x0FU) << 18 | (at[1] & 0x3FU) << 12 | (at[2] & 0x3FU) << 6 | (at[3] & 0x3FU);
}

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

/// Four sequences of two bytes, in one word, become four units. Returns the sequences that it took, in fours.
long decodeTwoByteBlocks(unsigned char const* src, unsigned char const* end, unsigned short* dst) {
    long taken = 0;
    for (; end - src - 2 * taken >= 8; taken += 4) {
        std::uint64_t const bytes = vyn::wordAt(src + 2 * taken);
        if ((bytes & 0xC0E0 * vyn::inEachUnit) != 0x80C0 * vyn::inEachUnit)
            break;
        std::uint64_t const units = (bytes & 0x1F * vyn::inEachUnit) << 6 | (bytes >> 8 & 0x3F * vyn::inEachUnit);
        std::memcpy(dst + taken, &units, sizeof units);
    }
    return taken;
}

struct Utf8Cursor {
    unsigned char const* src;
    unsigned short* dst;
    unsigned long room;
    unsigned char const* runEnd; // no terminator before it
    bool sawIllegal = false;

    void write(unsigned unit) {
        *dst++ = static_cast<unsigned short>(unit);
        --room;
    }
    void writePair(unsigned value) {
        write(vyn::highSurrogateOf(value));
        write(vyn::lowSurrogateOf(value));
    }
    void replace() {
        write(vyn::replacementCharacter);
        sawIllegal = true;
    }
};

/// The fast path: well-formed sequences while neither terminator nor room nor a source limit can end the text.
void decodeRun(Utf8Cursor& at) {
    constexpr unsigned long runBytes = 4096;
    // With room for a unit for each byte of the run, a pair always leaves room for two more units.
    if (at.src >= at.runEnd || at.room < static_cast<unsigned long>(at.runEnd - at.src))
        at.runEnd = at.src + strnlen(reinterpret_cast<char const*>(at.src), std::min(at.room, runBytes));

    unsigned char const* src = at.src;
    unsigned char const* const end = at.runEnd;
    unsigned short* dst = at.dst;
    while (src < end) {
        if (*src < 0x80) {
            long const moved = vyn::moveAsciiBlocks(src, end, dst);
            src += moved;
            dst += moved;
            while (src < end && *src < 0x80)
                *dst++ = *src++;
            continue;
        }
        if (end - src < 4)
            break;
        std::uint32_t const head = headOf(src);
        if (isTwoByteHead(head)) {
            *dst++ = static_cast<unsigned short>(twoByteValue(src));
            src += 2;
            long const more = decodeTwoByteBlocks(src, end, dst);
            src += 2 * more;
            dst += more;
        } else if (isThreeByteHead(head)) {
            *dst++ = static_cast<unsigned short>(threeByteValue(src));
            src += 3;
        } else if (isFourByteHead(head)) {
            unsigned const value = fourByteValue(src);
            *dst++ = vyn::highSurrogateOf(value);
            *dst++ = vyn::lowSurrogateOf(value);
            src += 4;
            at.sawIllegal = true; // its continuation bytes, which the literal path reads once more
        } else {
            break;
        }
    }
    at.room -= static_cast<unsigned long>(dst - at.dst);
    at.src = src;
    at.dst = dst;
}

/// The literal path: one lead byte. A malformed sequence is replaced, and what follows its lead byte is read again.
void decodeOne(Utf8Cursor& at) {
    unsigned char const* const sequence = at.src++;
    switch (oUTF8Bits[*sequence >> 4]) {
    case 0: // a stray continuation byte leaves nothing behind but the flag
        at.sawIllegal = true;
        break;
    case 1:
        at.write(*sequence);
        break;
    case 2:
        if (!areContinuations(at.src, 1))
            return at.replace();
        at.write(twoByteValue(sequence));
        at.src += 1;
        break;
    case 3:
        if (!areContinuations(at.src, 2))
            return at.replace();
        at.write(threeByteValue(sequence));
        at.src += 2;
        break;
    default:
        if (at.room < 2 || !areContinuations(at.src, 3))
            return at.replace();
        at.writePair(fourByteValue(sequence));
        // The continuation bytes are deliberately not skipped: read again as strays, they raise the flag.
        break;
    }
}

/// Bytes by unit, for counting.
struct Utf8Lengths {
    static constexpr bool pairsSurrogates = true;

    static bool ready() { return true; }

    static vyn::Encoded encodeOne(unsigned short const* at) {
        if (at[0] < 0x80)
            return {0, 1, 1, vyn::Verdict::Mapped};
        if (at[0] < 0x800)
            return {0, 2, 1, vyn::Verdict::Mapped};
        if (!vyn::isHighSurrogate(at[0]))
            return {0, 3, 1, vyn::Verdict::Mapped};
        if (!vyn::isLowSurrogate(at[1]))
            return {0, 0, 1, vyn::Verdict::Unmapped};
        return {0, 4, 2, vyn::Verdict::Mapped};
    }
};

} // namespace

VynCharSetConverterUTF8::~VynCharSetConverterUTF8() = default;

unsigned long VynCharSetConverterUTF8::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                               ILLCHAR_OPTYPE, bool* illegal, int maxSrc) {
    if (!dst || !src)
        return 0;
    auto const* const start = static_cast<unsigned char const*>(src);
    Utf8Cursor at{start, dst, dstUnits, start};
    while (at.room != 0 && *at.src != 0) {
        if (maxSrc <= 0) {
            decodeRun(at);
            if (at.room == 0 || *at.src == 0)
                break;
        }
        decodeOne(at);
        if (maxSrc > 0 && at.src - start >= maxSrc)
            break;
    }
    *at.dst = 0;
    if (illegal)
        *illegal = at.sawIllegal;
    return static_cast<unsigned long>(at.dst - dst);
}

unsigned long VynCharSetConverterUTF8::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                 ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeUtf8(dst, src, dstCap, op, illegal, vyn::Utf8Escapes::AsConverter);
}

unsigned long VynCharSetConverterUTF8::getNumUnits(void const* src, unsigned long len) {
    if (!src)
        return 0;
    auto const* at = static_cast<unsigned char const*>(src);
    if (len == static_cast<unsigned long>(-1))
        len = std::strlen(static_cast<char const*>(src));
    unsigned long units = 0;
    while (len != 0 && *at != 0) {
        unsigned const length = oUTF8Bits[*at >> 4];
        // Unlike the conversion, the count ends at a stray continuation byte, and takes on trust what follows a lead
        // byte.
        if (length == 0 || length > len)
            break;
        units += length == 4 ? 2 : 1;
        at += length;
        len -= length;
    }
    return units;
}

unsigned long VynCharSetConverterUTF8::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(Utf8Lengths{}, src, len);
}

unsigned int VynCharSetConverterUTF8::getMinUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterUTF8::getMaxUnitSize() const {
    return 3;
}
unsigned int VynCharSetConverterUTF8::getNullCharSize() const {
    return 1;
}
