#include <vynulib/VynCharSetConverterUTF32.h>

#include "base/Surrogates.h"
#include "converters/loops/EncodeLoop.h"

#include <cstring>

namespace {

constexpr unsigned long valueSize = 4;

unsigned readValue(void const* src, unsigned long index) {
    unsigned value;
    std::memcpy(&value, static_cast<unsigned char const*>(src) + index * valueSize, valueSize);
    return value;
}

void writeValue(void* dst, unsigned long index, unsigned value) {
    std::memcpy(static_cast<unsigned char*>(dst) + index * valueSize, &value, valueSize);
}

constexpr bool isSurrogate(unsigned value) {
    return (value & ~0x7FFU) == 0xD800;
}

struct Utf32Counting {
    static constexpr bool pairsSurrogates = true;

    static bool ready() { return true; }

    static vyn::Encoded encodeOne(unsigned short const* at) {
        bool const pair = vyn::isHighSurrogate(at[0]) && vyn::isLowSurrogate(at[1]);
        return {0, valueSize, pair ? 2U : 1U, vyn::Verdict::Mapped};
    }
};

/// The sequences of UTF-8 by their number of trailing bytes, in the form of RFC 2279.
struct SequenceForm {
    unsigned lead;     // bits that mark the lead byte
    unsigned leadMask; // bits of the lead byte that carry the value
    unsigned minimum;  // a smaller value is an overlong form
};
constexpr SequenceForm sequenceForms[] = {{0x00, 0x7F, 0},       {0xC0, 0x1F, 0x80},     {0xE0, 0x0F, 0x800},
                                          {0xF0, 0x07, 0x10000}, {0xF8, 0x03, 0x200000}, {0xFC, 0x01, 0x4000000}};
constexpr unsigned maxTrails = 5;

unsigned trailsOf(unsigned value) {
    unsigned trails = 0;
    while (trails < maxTrails && value >= sequenceForms[trails + 1].minimum)
        ++trails;
    return trails;
}

/// Writes `value`, up to 0x7FFFFFFF; returns the bytes written.
unsigned writeSequence(unsigned char* dst, unsigned value) {
    unsigned const trails = trailsOf(value);
    *dst = static_cast<unsigned char>(sequenceForms[trails].lead | value >> 6 * trails);
    for (unsigned i = 1; i <= trails; ++i)
        dst[i] = static_cast<unsigned char>(0x80 | (value >> 6 * (trails - i) & 0x3F));
    return trails + 1;
}

} // namespace

VynCharSetConverterUTF32::~VynCharSetConverterUTF32() = default;

unsigned long VynCharSetConverterUTF32::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                ILLCHAR_OPTYPE, bool* illegal, int maxSrc) {
    if (!dst || !src)
        return 0;
    if (illegal)
        *illegal = false;
    unsigned long units = 0;
    for (unsigned long i = 0; units < dstUnits && (maxSrc < 0 || i < static_cast<unsigned long>(maxSrc)); ++i) {
        unsigned const value = readValue(src, i);
        if (value == 0)
            break;
        if (value <= vyn::maxBmpValue) {
            dst[units++] = static_cast<unsigned short>(value);
            continue;
        }
        if (dstUnits - units < 2)
            break;
        dst[units++] = vyn::highSurrogateOf(value);
        dst[units++] = vyn::lowSurrogateOf(value);
    }
    dst[units] = 0;
    return units;
}

unsigned long VynCharSetConverterUTF32::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                  ILLCHAR_OPTYPE op, bool* illegal) {
    if (!dst || !src)
        return 0;
    if (illegal)
        *illegal = false;
    unsigned long const capacity = dstCap / valueSize;
    unsigned long values = 0;
    while (values < capacity && *src != 0) {
        unsigned const unit = *src++;
        if (!vyn::isHighSurrogate(unit)) {
            writeValue(dst, values++, unit);
            continue;
        }
        if (vyn::isLowSurrogate(*src)) {
            writeValue(dst, values++, vyn::combineSurrogates(unit, *src++));
            continue;
        }
        if (illegal)
            *illegal = true;
        if (op == ILLCHAR_STOP)
            break;
        unsigned char replacement[vyn::unitEscapeLength] = {};
        unsigned short const lone = static_cast<unsigned short>(unit);
        unsigned long const length = vyn::writeUnconvertible(replacement, capacity - values, &lone, 1, op);
        if (length == 0)
            break;
        for (unsigned long i = 0; i < length; ++i)
            writeValue(dst, values++, replacement[i]);
    }
    writeValue(dst, values, 0);
    return values * valueSize;
}

unsigned long VynCharSetConverterUTF32::fromUTF8(void* dst, unsigned char const* src, unsigned long len, ILLCHAR_OPTYPE,
                                                 bool* illegal) {
    if (illegal)
        *illegal = false;
    if (!dst || !src)
        return 0;
    auto* at = const_cast<unsigned char*>(src); // only read
    unsigned long values = 0;
    unsigned value = 1;
    while (values < len && (value = UTF32fromUTF8(&at)) != 0)
        writeValue(dst, values++, value);
    writeValue(dst, values, 0);
    return values;
}

unsigned long VynCharSetConverterUTF32::toUTF8(unsigned char* dst, void const* src, unsigned long len, ILLCHAR_OPTYPE,
                                               bool* illegal) {
    if (illegal)
        *illegal = false;
    if (!dst || !src)
        return 0;
    unsigned long written = 0;
    for (unsigned long i = 0; written < len; ++i) {
        unsigned value = readValue(src, i);
        if (isSurrogate(value) || value >= 0x80000000U) {
            value = vyn::replacementCharacter;
            if (illegal)
                *illegal = true;
        }
        // Room is deliberately tested behind the character only: it is written whole even where it passes the end.
        unsigned const bytes = writeSequence(dst + written, value);
        if (value == 0)
            return written;
        written += bytes;
    }
    if (written == len)
        dst[written] = 0;
    return written;
}

unsigned int VynCharSetConverterUTF32::UTF32fromUTF8(unsigned char** p) {
    unsigned char const* const at = *p;
    unsigned const lead = at[0];
    ++*p;
    if (lead < 0x80)
        return lead;
    if (lead < 0xC0 || lead >= 0xFE)
        return vyn::replacementCharacter;
    unsigned trails = maxTrails;
    while ((lead & ~sequenceForms[trails].leadMask & 0xFF) != sequenceForms[trails].lead)
        --trails;
    SequenceForm const& form = sequenceForms[trails];
    unsigned value = lead & form.leadMask;
    for (unsigned i = 1; i <= trails; ++i) {
        if ((at[i] & 0xC0) != 0x80)
            return vyn::replacementCharacter;
        value = value << 6 | (at[i] & 0x3FU);
    }
    *p += trails;
    bool const rejected = value < form.minimum || isSurrogate(value) || value == 0xFFFE || value == 0xFFFF;
    return rejected ? vyn::replacementCharacter : value;
}

unsigned long VynCharSetConverterUTF32::getNumUnits(void const* src, unsigned long len) {
    constexpr auto unbounded = static_cast<unsigned long>(-1);
    if (!src)
        return 0;
    unsigned long const maxValues = len == unbounded ? unbounded : len / valueSize;
    unsigned long values = 0;
    while (values < maxValues && readValue(src, values) != 0)
        ++values;
    return values;
}

unsigned long VynCharSetConverterUTF32::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(Utf32Counting{}, src, len);
}

unsigned int VynCharSetConverterUTF32::getMinUnitSize() const {
    return valueSize;
}
unsigned int VynCharSetConverterUTF32::getMaxUnitSize() const {
    return valueSize;
}
unsigned int VynCharSetConverterUTF32::getNullCharSize() const {
    return valueSize;
}
