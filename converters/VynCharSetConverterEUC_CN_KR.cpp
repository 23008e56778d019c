#include <vynulib/VynCharSetConverterEUC_CN_KR.h>

#include "converters/codecs/RowCellCode.h"
#include "converters/loops/DecodeLoop.h"
#include "converters/loops/EncodeLoop.h"

namespace {

// DEL is deliberately no character of these sets: it is replaced in either direction.
constexpr bool isAscii(unsigned value) {
    return value >= 0x01 && value <= 0x7E;
}
constexpr bool isRowOrCell(unsigned char byte) {
    return byte >= 0xA1 && byte <= 0xFE;
}

} // namespace

struct vyn::EucCnKrCodec {
    static constexpr bool supplementary = false;
    static constexpr bool limitBehindMalformed = true;
    static constexpr bool pairsSurrogates = false;

    LookupTable<unsigned short> const* forward;
    LookupTable<unsigned short> const* reverse;

    bool ready() const { return forward != nullptr; }

    Decoded decodeOne(unsigned char const* at) const {
        if (isAscii(at[0]))
            return mapped(at[0], 1);
        if (!isRowOrCell(at[0]) || !isRowOrCell(at[1]))
            return malformed(1);
        return lookedUp(forward->lookup(rowCellCode(at[0], at[1])), 2);
    }

    /// Looks up ASCII as well, as a branch between one byte and two, which alternate in real text, would cost more.
    Decoded decodeAhead(unsigned char const* at) const {
        bool const ascii = isAscii(at[0]);
        if (!ascii && (!isRowOrCell(at[0]) || !isRowOrCell(at[1])))
            return malformed(1);
        unsigned const value = forward->lookup(rowCellCode(at[0], at[1]));
        return lookedUp(ascii ? at[0] : value, ascii ? 1 : 2);
    }

    Encoded encodeOne(unsigned short const* at) const {
        if (isAscii(*at))
            return {*at, 1, 1, Verdict::Mapped};
        unsigned const code = reverse->lookup(*at);
        if (code == 0)
            return {0, 0, 1, Verdict::Unmapped};
        return {code + rowCellHighBits, 2, 1, Verdict::Mapped};
    }
};

VynCharSetConverterEUC_CN_KR::~VynCharSetConverterEUC_CN_KR() = default;

vyn::EucCnKrCodec VynCharSetConverterEUC_CN_KR::codec() {
    load();
    return {forwardTable(), reverseTable()};
}

unsigned long VynCharSetConverterEUC_CN_KR::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                    ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText(codec(), dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterEUC_CN_KR::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                      ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText(codec(), dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterEUC_CN_KR::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits(src, len, [](unsigned char const* at, unsigned long bytesLeft) {
        bool const pair = bytesLeft >= 2 && isRowOrCell(at[0]) && isRowOrCell(at[1]);
        return vyn::Counted{pair ? 2U : 1U, 1};
    });
}

unsigned long VynCharSetConverterEUC_CN_KR::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(codec(), src, len);
}

unsigned int VynCharSetConverterEUC_CN_KR::getMinUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterEUC_CN_KR::getMaxUnitSize() const {
    return 2;
}
unsigned int VynCharSetConverterEUC_CN_KR::getNullCharSize() const {
    return 1;
}
