#include <vynulib/VynCharSetConverterUTF16.h>

#include "converters/kernels/TextScan.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

constexpr unsigned long unitSize = sizeof(unsigned short);

/// The units before the first zero unit of the text at `src`, at most `maxUnits`.
unsigned long lengthOf(void const* src, unsigned long maxUnits) {
    if (reinterpret_cast<std::uintptr_t>(src) % unitSize == 0)
        return vyn::lengthWithin(static_cast<unsigned short const*>(src), maxUnits);
    auto const* bytes = static_cast<unsigned char const*>(src);
    unsigned long units = 0;
    while (units < maxUnits && (bytes[units * unitSize] != 0 || bytes[units * unitSize + 1] != 0))
        ++units;
    return units;
}

} // namespace

VynCharSetConverterUTF16::~VynCharSetConverterUTF16() = default;

unsigned long VynCharSetConverterUTF16::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                ILLCHAR_OPTYPE, bool* illegal, int maxSrc) {
    if (!dst || !src)
        return 0;
    if (illegal)
        *illegal = false;
    // A negative limit deliberately copies nothing either.
    unsigned long const limit = maxSrc > 0 ? static_cast<unsigned long>(maxSrc) : 0;
    unsigned long const units = lengthOf(src, std::min(dstUnits, limit));
    std::memcpy(dst, src, units * unitSize);
    dst[units] = 0;
    return units;
}

unsigned long VynCharSetConverterUTF16::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                  ILLCHAR_OPTYPE, bool* illegal) {
    if (!dst || !src)
        return 0;
    if (illegal)
        *illegal = false;
    unsigned long const bytes = vyn::lengthWithin(src, dstCap / unitSize) * unitSize;
    std::memcpy(dst, src, bytes);
    std::memset(static_cast<unsigned char*>(dst) + bytes, 0, unitSize);
    return bytes;
}

unsigned long VynCharSetConverterUTF16::getNumUnits(void const* src, unsigned long len) {
    constexpr auto unbounded = static_cast<unsigned long>(-1);
    return src ? lengthOf(src, len == unbounded ? unbounded : len / unitSize) : 0;
}

unsigned long VynCharSetConverterUTF16::getNumBytes(unsigned short const* src, unsigned long len) {
    return src ? vyn::lengthWithin(src, len) * unitSize : 0;
}
