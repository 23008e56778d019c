#include <vynulib/VynCharSetConverterUTF32.h>

#include "converters/codecs/Utf32.h"
#include "converters/codecs/Utf8Long.h"
#include "converters/loops/Count.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

namespace {

constexpr auto codec = [] { return vyn::Utf32Codec(); };
using Value = vyn::Utf32Codec::Element;

} // namespace

VynCharSetConverterUTF32::~VynCharSetConverterUTF32() = default;

unsigned long VynCharSetConverterUTF32::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    // Unlike the byte sets, this one reads nothing for a limit of 0.
    unsigned long const room = maxSrc == 0 ? 0 : dstUnits;
    return vyn::decodeText(codec, dst, src, room, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterUTF32::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                  ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText(codec, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterUTF32::fromUTF8(void* dst, unsigned char const* src, unsigned long len, ILLCHAR_OPTYPE,
                                                 bool* illegal) {
    if (illegal)
        *illegal = false;
    if (!dst || !src)
        return 0;
    auto* const start = static_cast<Value*>(dst);
    auto* out = start;
    auto* at = const_cast<unsigned char*>(src); // only read
    unsigned value = 1;
    for (; len != 0 && (value = UTF32fromUTF8(&at)) != 0; --len)
        *out++ = value;
    *out = 0;
    return static_cast<unsigned long>(out - start);
}

unsigned long VynCharSetConverterUTF32::toUTF8(unsigned char* dst, void const* src, unsigned long len, ILLCHAR_OPTYPE,
                                               bool* illegal) {
    if (illegal)
        *illegal = false;
    if (!dst || !src)
        return 0;
    unsigned long written = 0;
    for (auto const* at = static_cast<Value const*>(src); written < len; ++at) {
        unsigned value = *at;
        if (vyn::isSurrogate(value) || value >= vyn::endOfLongSequences) {
            value = vyn::replacementCharacter;
            if (illegal)
                *illegal = true;
        }
        // Room is deliberately tested after the character only: it is written whole even where it passes the end.
        unsigned const bytes = vyn::writeLongSequence(dst + written, value);
        if (value == 0)
            return written;
        written += bytes;
    }
    if (written == len)
        dst[written] = 0;
    return written;
}

unsigned int VynCharSetConverterUTF32::UTF32fromUTF8(unsigned char** p) {
    vyn::Decoded const found = vyn::readLongSequence({*p});
    *p += found.elements;
    return found.mapped ? found.value : vyn::replacementCharacter;
}

unsigned long VynCharSetConverterUTF32::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits(codec, src, len);
}

unsigned long VynCharSetConverterUTF32::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(codec, src, len);
}
