#include <vynulib/VynCharSet.h>

#include "base/ScratchUnits.h"
#include "base/UnitEscape.h"
#include "converters/codecs/Utf8.h"
#include "converters/kernels/UnitScan.h"
#include "converters/loops/Encode.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynCharSetConverter.h>

#include <algorithm>
#include <cstring>
#include <new>

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

/// Encodes with escapes within the room, also where the converter itself, that of UTF-8, does not keep to it.
unsigned long encodePath(VynCharSetConverter& converter, char* dst, unsigned short const* src, unsigned long room) {
    if (&converter == &converterOf(VYNCS_UTF8))
        return vyn::encodeText([] { return vyn::Utf8Codec{.boundedEscapes = true}; }, dst, src, room, ILLCHAR_ESCAPE,
                               nullptr);
    return converter.fromUTF16(dst, src, room, ILLCHAR_ESCAPE, nullptr);
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
        unsigned long const length = std::strlen(reinterpret_cast<char const*>(src));
        vyn::ScratchUnits text(length);
        if (converterOf(VYNCS_UTF8).toUTF16(text.data(), src, length, ILLCHAR_REPLACE, nullptr, -1) == 0)
            return 0;
        return encode(local, text.data(), dstSize - terminator);
    });
}

/// Turns each escape in the text back into its unit; returns the length that is left, terminator not counted.
unsigned long unescape(unsigned short* text, unsigned long length) {
    unsigned short* out = text;
    unsigned long at = 0;
    while (at < length) {
        int const unit = vyn::readUnitEscape(vyn::Limited{text + at, length - at});
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
        for (VynCharSet const set : {cs, VYNCS_ISO_8859_1}) {
            converterOf(set).toUTF16(text.data(), src, length, ILLCHAR_REPLACE, &illegal, -1);
            if (!illegal)
                break;
        }
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
        unsigned long const units =
            converterOf(VYNCS_OS_DEFAULT).toUTF16(text.data(), src, length, ILLCHAR_REPLACE, nullptr, -1);
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
