#include <vynulib/VynCharSet.h>

#include "base/ScratchUnits.h"
#include "base/Surrogates.h"
#include "base/UnitEscape.h"
#include "charset/ServedSets.h"
#include "charset/UnitPieces.h"
#include "converters/kernels/TextScan.h"
#include "converters/loops/Text.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynCharSetConverter.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

using vyn::ServedSet;
using vyn::UnitPieces;

VynCharSetConverter& converterOf(VynCharSet cs) {
    return *VynCharSetConverter::getConverter(cs);
}

ServedSet const& utf8Set() {
    return *vyn::servedSet(VYNCS_UTF8);
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

/// Turns each escape in a text back into its unit, but for one that may go on after the text.
struct Unescaped {
    Unescaped(unsigned short* units, std::size_t count, bool isLast) {
        std::size_t at = 0;
        while (at < count) {
            vyn::Limited const text{units + at, count - at};
            if (!isLast && text.left < vyn::unitEscapeLength && vyn::unitEscapePrefix(text) == text.left)
                break;
            int const unit = vyn::readUnitEscape(text);
            units[length++] = unit >= 0 ? static_cast<unsigned short>(unit) : units[at];
            at += unit >= 0 ? vyn::unitEscapeLength : 1;
        }
        waiting = count - at;
        std::copy_n(units + at, waiting, units + length);
        length += waiting;
        units[length] = 0;
    }

    std::size_t length = 0;
    std::size_t waiting; ///< Units at the end that may begin an escape.
};

/// Returns how many units at the end of the piece belong to the next one.
std::size_t unescapePiece(UnitPieces& piece) {
    Unescaped const done(piece.units(), piece.count(), piece.isLast());
    piece.shorten(done.length);
    return done.waiting;
}

std::size_t leave(UnitPieces&) {
    return 0;
}

/// Converts all pieces, the first of which is there, at most `room` bytes and a terminator. `edit` may change a piece and
/// returns how many units at its end belong to the next one. Returns the bytes written.
unsigned long encodePieces(UnitPieces& text, ServedSet const& set, void* dst, unsigned long room,
                           ILLCHAR_OPTYPE op = ILLCHAR_REPLACE, std::size_t edit(UnitPieces&) = leave) {
    unsigned long written = 0;
    for (;; text.next()) {
        std::size_t waiting = edit(text);
        // The low surrogate may follow.
        if (text.count() > waiting && vyn::isHighSurrogate(text.units()[text.count() - waiting - 1]))
            ++waiting;
        bool const isLast = text.isLast();
        if (!isLast)
            text.hold(waiting);
        auto const done = set.operations->encodePart(set.converter, text.units(), static_cast<char*>(dst) + written,
                                                     room - written, op);
        written += done.bytes;
        if (isLast || done.units != text.count()) // the room ends, or what was decoded has a terminator in it
            return written;
    }
}

bool isLegal(ServedSet const& set, char const* src, unsigned long length) {
    UnitPieces text(set, src, length);
    do
        text.next();
    while (!text.sawIllegal() && !text.isLast());
    return !text.sawIllegal();
}

/// Common to the conversions from UTF-8 to a local set.
unsigned long utf8ToLocal(char* dst, unsigned char const* src, unsigned long dstSize, VynCharSet cs,
                          ILLCHAR_OPTYPE op) {
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
    unsigned long const room = dstSize - terminator;
    return orZero([&]() -> unsigned long {
        if (ServedSet const* const set = vyn::setBehind(cs)) {
            UnitPieces text(utf8Set(), src, static_cast<std::size_t>(-1));
            text.next();
            return text.count() != 0 ? encodePieces(text, *set, dst, room, op) : 0;
        }
        unsigned long const length = std::strlen(reinterpret_cast<char const*>(src));
        vyn::ScratchUnits text(length);
        if (converterOf(VYNCS_UTF8).toUTF16(text.data(), src, length, ILLCHAR_REPLACE, nullptr, -1) == 0)
            return 0;
        return local.fromUTF16(dst, text.data(), room, op, nullptr);
    });
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
        ServedSet const* const local = vyn::setBehind(cs);
        if (!local) {
            vyn::ScratchUnits text(length);
            bool illegal = false;
            converterOf(cs).toUTF16(text.data(), src, length, ILLCHAR_REPLACE, &illegal, -1);
            if (!illegal)
                return UTF16ToUTF8(dst, text.data(), dstSize);
        }
        for (ServedSet const* const set : {local, vyn::servedSet(VYNCS_ISO_8859_1)}) {
            // Nothing is written before it is known of which set.
            if (!set)
                continue;
            UnitPieces text(*set, src, length);
            text.next();
            if (text.isLast() ? !text.sawIllegal() : isLegal(*set, src, length))
                return encodePieces(text, utf8Set(), dst, dstSize - 1);
        }
        return 0;
    });
}

unsigned long UTF8ToLocal(char* dst, unsigned char const* src, unsigned long dstSize, VynCharSet cs) {
    return utf8ToLocal(dst, src, dstSize, cs, ILLCHAR_REPLACE);
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
    auto const size = static_cast<unsigned long>(dstSize);
    return orZero([&]() -> unsigned long {
        if (ServedSet const* const set = vyn::setBehind(VYNCS_OS_DEFAULT)) {
            UnitPieces text(*set, src, length);
            text.next();
            return text.count() != 0 ? encodePieces(text, utf8Set(), dst, size - 1, ILLCHAR_REPLACE, unescapePiece) : 0;
        }
        vyn::ScratchUnits text(length);
        unsigned long const units =
            converterOf(VYNCS_OS_DEFAULT).toUTF16(text.data(), src, length, ILLCHAR_REPLACE, nullptr, -1);
        if (units == 0)
            return 0;
        Unescaped(text.data(), units, true);
        return UTF16ToUTF8(dst, text.data(), size);
    });
}

unsigned long UTF8ToLocalPath(char* dst, unsigned char const* src, int dstSize) {
    if (dstSize < 1)
        return 0;
    return utf8ToLocal(dst, src, static_cast<unsigned long>(dstSize), VYNCS_OS_DEFAULT, ILLCHAR_ESCAPE);
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
    return s ? static_cast<unsigned int>(vyn::lengthWithin(s, static_cast<unsigned long>(-1))) : 0;
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
