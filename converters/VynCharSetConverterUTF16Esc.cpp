#include <vynulib/VynCharSetConverterUTF16Esc.h>

#include "converters/loops/DecodeLoop.h"
#include "converters/loops/EncodeLoop.h"

namespace {

struct EscapedCodec {
    static constexpr bool supplementary = false;
    static constexpr bool limitBehindMalformed = true;

    static bool ready() { return true; }

    static vyn::Decoded decodeOne(unsigned char const* at) {
        if (int const unit = vyn::readUnitEscape(at); unit >= 0)
            return vyn::mapped(static_cast<unsigned>(unit), vyn::unitEscapeLength);
        // A byte beyond ASCII deliberately keeps the sign of a char: E9 is the unit FFE9.
        return vyn::mapped(static_cast<unsigned short>(static_cast<signed char>(*at)), 1);
    }

    /// What ASCII lacks is what this set writes as an escape.
    static vyn::Encoded encodeOne(unsigned short const* at) {
        return {*at, 1, 1, *at < 0x80 ? vyn::Verdict::Mapped : vyn::Verdict::Unmapped};
    }
};

} // namespace

VynCharSetConverterUTF16Esc::~VynCharSetConverterUTF16Esc() = default;

unsigned long VynCharSetConverterUTF16Esc::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                   ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText(EscapedCodec{}, dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterUTF16Esc::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                     ILLCHAR_OPTYPE, bool* illegal) {
    if (dst && src && illegal)
        *illegal = false; // and an escape never raises it: here it is the character itself
    return vyn::encodeText(EscapedCodec{}, dst, src, dstCap, ILLCHAR_ESCAPE, nullptr);
}

unsigned long VynCharSetConverterUTF16Esc::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits(src, len, [](unsigned char const* at, unsigned long bytesLeft) {
        bool const escape = bytesLeft >= vyn::unitEscapeLength && vyn::readUnitEscape(at) >= 0;
        return vyn::Counted{escape ? unsigned{vyn::unitEscapeLength} : 1U, 1};
    });
}

unsigned long VynCharSetConverterUTF16Esc::getNumBytes(unsigned short const* src, unsigned long len) {
    if (!src)
        return 0;
    unsigned long bytes = 0;
    for (; len != 0 && *src != 0; ++src, --len)
        bytes += *src < 0x80 ? 1 : vyn::unitEscapeLength;
    return bytes;
}

unsigned int VynCharSetConverterUTF16Esc::getMinUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterUTF16Esc::getMaxUnitSize() const {
    return vyn::unitEscapeLength;
}
unsigned int VynCharSetConverterUTF16Esc::getNullCharSize() const {
    return 1;
}
