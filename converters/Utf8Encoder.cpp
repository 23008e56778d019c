#include "converters/Utf8Encoder.h"

#include "base/Surrogates.h"
#include "base/UnitEscape.h"
#include "base/UnitScan.h"
#include "converters/kernels/AsciiRun.h"
#include "converters/loops/CodecStep.h"

#include <algorithm>

namespace vyn {
namespace {

struct EncodeCursor {
    unsigned short const* src;
    unsigned char* dst;
    unsigned long room;
};

constexpr unsigned char byteOf(unsigned value) {
    return static_cast<unsigned char>(value);
}
constexpr unsigned char trailOf(unsigned value, unsigned shift) {
    return byteOf(0x80 | (value >> shift & 0x3F));
}

void writeTwo(unsigned char* dst, unsigned unit) {
    dst[0] = byteOf(0xC0 | unit >> 6);
    dst[1] = trailOf(unit, 0);
}

void writeThree(unsigned char* dst, unsigned unit) {
    dst[0] = byteOf(0xE0 | unit >> 12);
    dst[1] = trailOf(unit, 6);
    dst[2] = trailOf(unit, 0);
}

void writeFour(unsigned char* dst, unsigned value) {
    dst[0] = byteOf(0xF0 | (value >> 18 & 7));
    dst[1] = trailOf(value, 12);
    dst[2] = trailOf(value, 6);
    dst[3] = trailOf(value, 0);
}

void took(EncodeCursor& at, unsigned units, unsigned long bytes) {
    at.src += units;
    at.dst += bytes;
    at.room -= bytes;
}

/// Four units below 0x800, in one word: ASCII and others alternate in real text, so there is no branch between them.
unsigned char* writeShortUnits(unsigned char* dst, std::uint64_t units) {
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
void encodeShortRun(unsigned short const*& src, unsigned short const* end, unsigned char*& dst) {
    long const ascii = moveAsciiBlocks(src, end, dst);
    src += ascii;
    dst += ascii;
    for (; end - src >= 4 && (wordAt(src) & 0xF800 * inEachUnit) == 0; src += 4)
        dst = writeShortUnits(dst, wordAt(src));
    while (src != end && *src < 0x80)
        *dst++ = byteOf(*src++);
    if (src != end && *src < 0x800) {
        writeTwo(dst, *src++);
        dst += 2;
    }
}

/// The fast path: whole characters while neither terminator nor room can end the text. Ends before a lone high surrogate.
/// A store may reach one byte behind the character, where the terminator will stand at the latest.
void encodeRun(EncodeCursor& at) {
    constexpr unsigned long runUnits = 2048;
    constexpr unsigned long maxBytesPerUnit = 3;
    unsigned short const* src = at.src;
    unsigned short const* const end = src + unitLength(src, std::min(at.room / maxBytesPerUnit, runUnits));
    unsigned char* dst = at.dst;
    while (src != end) {
        unsigned const unit = *src;
        if (unit < 0x800) {
            encodeShortRun(src, end, dst);
        } else if (!isHighSurrogate(unit)) {
            writeThree(dst, unit);
            dst += 3;
            ++src;
        } else if (end - src >= 2 && isLowSurrogate(src[1])) {
            writeFour(dst, combineSurrogates(unit, src[1]));
            dst += 4;
            src += 2;
        } else {
            break;
        }
    }
    at.room -= static_cast<unsigned long>(dst - at.dst);
    at.src = src;
    at.dst = dst;
}

/// Writes what stands for the lone high surrogate at the cursor. False: the text ends here.
bool replaceLoneSurrogate(EncodeCursor& at, ILLCHAR_OPTYPE op, Utf8Escapes escapes) {
    if (op == ILLCHAR_STOP)
        return false;
    if (op != ILLCHAR_ESCAPE) {
        *at.dst = replacementByte;
        took(at, 1, 1);
        return true;
    }
    if (at.room < unitEscapeLength)
        return false;
    writeUnitEscape(at.dst, *at.src);
    // The unit behind the surrogate is deliberately dropped, even where it is the terminator: the text then goes on
    // behind it. And the room deliberately shrinks by five, so that each escape lets the text run one byte further.
    bool const atEnd = at.src[1] == 0;
    took(at, 2, unitEscapeLength);
    if (escapes == Utf8Escapes::Bounded)
        return !atEnd;
    at.room += 1;
    return true;
}

/// The literal path: one character. False: the text ends before it.
bool encodeOne(EncodeCursor& at, ILLCHAR_OPTYPE op, bool& sawIllegal, Utf8Escapes escapes) {
    unsigned const unit = *at.src;
    if (unit < 0x80) {
        *at.dst = byteOf(unit);
        took(at, 1, 1);
        return true;
    }
    if (unit < 0x800) {
        if (at.room < 2)
            return false;
        writeTwo(at.dst, unit);
        took(at, 1, 2);
        return true;
    }
    if (!isHighSurrogate(unit)) {
        if (at.room < 3)
            return false;
        writeThree(at.dst, unit);
        took(at, 1, 3);
        return true;
    }
    if (!isLowSurrogate(at.src[1])) {
        sawIllegal = true;
        return replaceLoneSurrogate(at, op, escapes);
    }
    if (at.room < 4)
        return false;
    writeFour(at.dst, combineSurrogates(unit, at.src[1]));
    took(at, 2, 4);
    return true;
}

} // namespace

unsigned long encodeUtf8(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op, bool* illegal,
                         Utf8Escapes escapes) {
    if (!dst || !src)
        return 0;
    auto* const start = static_cast<unsigned char*>(dst);
    EncodeCursor at{src, start, dstCap};
    bool sawIllegal = false;
    do {
        encodeRun(at);
    } while (at.room != 0 && *at.src != 0 && encodeOne(at, op, sawIllegal, escapes));
    *at.dst = 0;
    if (illegal)
        *illegal = sawIllegal;
    return static_cast<unsigned long>(at.dst - start);
}

} // namespace vyn
