#include <vynulib/VynCharSet.h>

#include "base/ScratchUnits.h"
#include "base/UnitEscape.h"
#include "base/UnitScan.h"
#include "converters/Utf8Encoder.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynCharSetConverter.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string>

namespace {

VynCharSetConverter& converterOf(VynCharSet cs) {
    return *VynCharSetConverter::getConverter(cs);
}

/// What `convert` returns, or 0 where memory runs out.
template <class Convert>
unsigned long orZero(Convert convert) {
    try {
        return convert();
    } catch (std::bad_alloc const&) {
        return 0;
    }
}

/// `toUTF16` of the `length` bytes at `src`, which a zero byte follows. A set with a wider terminator reads a copy that
/// ends with one, behind a character that may be cut off: it must not look for it behind the zero byte.
unsigned long decodeBytes(VynCharSetConverter& converter, unsigned short* dst, char const* src, unsigned long length,
                          bool* illegal) {
    unsigned long const terminator = converter.getNullCharSize();
    if (terminator == 1)
        return converter.toUTF16(dst, src, length, ILLCHAR_REPLACE, illegal, -1);
    std::string const padded = std::string(src, length) + std::string(2 * terminator, '\0');
    return converter.toUTF16(dst, padded.data(), length, ILLCHAR_REPLACE, illegal, -1);
}

/// Encodes with escapes within the room, also where the converter itself, that of UTF-8, does not keep to it.
unsigned long encodePath(VynCharSetConverter& converter, char* dst, unsigned short const* src, unsigned long room) {
    if (&converter == &converterOf(VYNCS_UTF8))
        return vyn::encodeUtf8(dst, src, room, ILLCHAR_ESCAPE, nullptr, vyn::Utf8Escapes::Bounded);
    return converter.fromUTF16(dst, src, room, ILLCHAR_ESCAPE, nullptr);
}

/// The most UTF-16 units that output of `room` bytes can come from: no set makes less than a byte of a pair. Two more
/// keep what happens at the end of the units away from those that count.
unsigned long unitsFor(unsigned long room) {
    constexpr unsigned long unbounded = std::numeric_limits<unsigned long>::max();
    return room < unbounded / 4 ? 2 * room + 2 : unbounded;
}

/// Common to the conversions from UTF-8 to a local set, which `encode(converter, text, room)` ends.
template <class Encode>
unsigned long utf8ToLocal(char* dst, unsigned char const* src, unsigned long dstSize, VynCharSet cs, Encode encode) {
    if (!dst || !src)
        return 0;
    VynCharSetConverter& local = converterOf(cs);
    unsigned long const terminator = local.getNullCharSize();
    if (terminator > dstSize)
        return 0;
    if (*src == 0) {
        std::memset(dst, 0, terminator);
        return 0;
    }
    return orZero([&]() -> unsigned long {
        unsigned long const room = dstSize - terminator;
        unsigned long const capacity = strnlen(reinterpret_cast<char const*>(src), unitsFor(room));
        vyn::ScratchUnits text(capacity);
        if (converterOf(VYNCS_UTF8).toUTF16(text.data(), src, capacity, ILLCHAR_REPLACE, nullptr, -1) == 0)
            return 0;
        return encode(local, text.data(), room);
    });
}

/// Turns each escape in the text back into its unit; returns the length that is left, terminator not counted.
unsigned long unescape(unsigned short* text, unsigned long length) {
    unsigned short* out = text;
    unsigned long at = 0;
    while (at < length) {
        int const unit = length - at >= vyn::unitEscapeLength ? vyn::readUnitEscape(text + at) : -1;
        *out++ = unit >= 0 ? static_cast<unsigned short>(unit) : text[at];
        at += unit >= 0 ? vyn::unitEscapeLength : 1;
    }
    *out = 0;
    return static_cast<unsigned long>(out - text);
}

} // namespace

char const* VynCharSetToString(VynCharSet cs) {
    return g_oCnvtMgr.charSetToString(cs);
}

VynCharSet VynCharSetFromString(char const* name) {
    return g_oCnvtMgr.charSetFromString(name);
}

unsigned long LocalToUTF8(unsigned char* dst, char const* src, unsigned long dstSize, VynCharSet cs) {
    if (!dst || dstSize == 0 || !src)
        return 0;
    unsigned long const length = std::strlen(src);
    if (length == 0) {
        *dst = 0;
        return 0;
    }
    return orZero([&]() -> unsigned long {
        vyn::ScratchUnits text(length);
        bool illegal = false;
        decodeBytes(converterOf(cs), text.data(), src, length, &illegal);
        if (illegal)
            decodeBytes(converterOf(VYNCS_ISO_8859_1), text.data(), src, length, &illegal);
        if (illegal)
            return 0;
        return UTF16ToUTF8(dst, text.data(), dstSize);
    });
}

unsigned long UTF8ToLocal(char* dst, unsigned char const* src, unsigned long dstSize, VynCharSet cs) {
    return utf8ToLocal(dst, src, dstSize, cs,
                       [&](VynCharSetConverter& local, unsigned short* text, unsigned long room) {
                           return local.fromUTF16(dst, text, room, ILLCHAR_REPLACE, nullptr);
                       });
}

unsigned long LocalToUTF16(unsigned short* dst, char const* src, int dstSize, VynCharSet cs) {
    if (!dst || !src || dstSize < 1)
        return 0;
    return orZero([&] {
        auto const room = static_cast<unsigned long>(dstSize) - 1;
        bool illegal = false;
        unsigned long const units = converterOf(cs).toUTF16(dst, src, room, ILLCHAR_REPLACE, &illegal, -1);
        if (!illegal)
            return units;
        return converterOf(VYNCS_ISO_8859_1).toUTF16(dst, src, room, ILLCHAR_REPLACE, nullptr, -1);
    });
}

unsigned long UTF16ToLocal(char* dst, unsigned short const* src, unsigned long dstSize, VynCharSet cs) {
    if (!dst || !src)
        return 0;
    VynCharSetConverter& local = converterOf(cs);
    unsigned long const terminator = local.getNullCharSize();
    if (terminator > dstSize)
        return 0;
    return orZero([&] { return local.fromUTF16(dst, src, dstSize - terminator, ILLCHAR_REPLACE, nullptr); });
}

unsigned long UTF8ToUTF16(unsigned short* dst, unsigned char const* src, unsigned long dstSize) {
    if (!dst || !src || dstSize == 0)
        return 0;
    return converterOf(VYNCS_UTF8).toUTF16(dst, src, dstSize - 1, ILLCHAR_REPLACE, nullptr, -1);
}

unsigned long UTF16ToUTF8(unsigned char* dst, unsigned short const* src, unsigned long dstSize) {
    if (!dst || !src || dstSize == 0)
        return 0;
    return converterOf(VYNCS_UTF8).fromUTF16(dst, src, dstSize - 1, ILLCHAR_REPLACE, nullptr);
}

unsigned long LocalPathToUTF8(unsigned char* dst, char const* src, int dstSize) {
    if (!dst || !src || dstSize < 1)
        return 0;
    unsigned long const length = std::strlen(src);
    if (length == 0) {
        *dst = 0;
        return 0;
    }
    return orZero([&]() -> unsigned long {
        vyn::ScratchUnits text(length);
        unsigned long const units = decodeBytes(converterOf(VYNCS_OS_DEFAULT), text.data(), src, length, nullptr);
        if (units == 0)
            return 0;
        unescape(text.data(), units);
        return UTF16ToUTF8(dst, text.data(), static_cast<unsigned long>(dstSize));
    });
}

unsigned long UTF8ToLocalPath(char* dst, unsigned char const* src, int dstSize) {
    if (dstSize < 1)
        return 0;
    auto const size = static_cast<unsigned long>(dstSize);
    return utf8ToLocal(dst, src, size, VYNCS_OS_DEFAULT,
                       [&](VynCharSetConverter& local, unsigned short* text, unsigned long room) {
                           return encodePath(local, dst, text, room);
                       });
}

unsigned long GetNumUnits(char const* src, VynCharSet cs) {
    return orZero([&] { return converterOf(cs).getNumUnits(src, static_cast<unsigned long>(-1)); });
}

unsigned long GetNumBytes(unsigned short const* src, VynCharSet cs) {
    return orZero([&] { return converterOf(cs).getNumBytes(src, static_cast<unsigned long>(-1)); });
}

unsigned int GetMinUnitSize(VynCharSet cs) {
    return converterOf(cs).getMinUnitSize();
}

unsigned int GetMaxUnitSize(VynCharSet cs) {
    return converterOf(cs).getMaxUnitSize();
}

unsigned int GetNullCharSize(VynCharSet cs) {
    return converterOf(cs).getNullCharSize();
}

unsigned int VynCharSetWStrlen(unsigned short const* s) {
    return s ? static_cast<unsigned int>(vyn::unitLength(s, static_cast<unsigned long>(-1))) : 0;
}

bool VynCharSetWStrEqual(unsigned short const* a, unsigned short const* b) {
    if (!a || !b)
        return a == b;
    while (*a == *b && *a != 0) {
        ++a;
        ++b;
    }
    return *a == *b;
}
