#include <vynulib/VynCharSetConverterUTF8.h>

#include "converters/codecs/Utf8.h"
#include "converters/loops/Count.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

namespace {

constexpr auto codec = [] { return vyn::Utf8Codec(); };

} // namespace

VynCharSetConverterUTF8::~VynCharSetConverterUTF8() = default;

unsigned long VynCharSetConverterUTF8::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                               ILLCHAR_OPTYPE, bool* illegal, int maxSrc) {
    // The policy is deliberately not asked: decoding always replaces or skips.
    return vyn::decodeText(codec, dst, src, dstUnits, ILLCHAR_REPLACE, illegal, maxSrc);
}

unsigned long VynCharSetConverterUTF8::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                 ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText(codec, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterUTF8::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits(codec, src, len);
}

unsigned long VynCharSetConverterUTF8::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(codec, src, len);
}
