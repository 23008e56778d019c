#include <vynulib/VynCharSetConverterUTF16Esc.h>

#include "converters/codecs/Utf16Esc.h"
#include "converters/loops/Count.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

namespace {

constexpr auto codec = [] { return vyn::Utf16EscCodec(); };

} // namespace

VynCharSetConverterUTF16Esc::~VynCharSetConverterUTF16Esc() = default;

unsigned long VynCharSetConverterUTF16Esc::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                   ILLCHAR_OPTYPE, bool* illegal, int maxSrc) {
    return vyn::decodeText(codec, dst, src, dstUnits, ILLCHAR_REPLACE, illegal, maxSrc);
}

unsigned long VynCharSetConverterUTF16Esc::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                     ILLCHAR_OPTYPE, bool* illegal) {
    return vyn::encodeText(codec, dst, src, dstCap, ILLCHAR_REPLACE, illegal);
}

unsigned long VynCharSetConverterUTF16Esc::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits(codec, src, len);
}

unsigned long VynCharSetConverterUTF16Esc::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(codec, src, len);
}
