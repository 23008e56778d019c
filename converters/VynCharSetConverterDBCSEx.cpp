#include <vynulib/VynCharSetConverterDBCSEx.h>

#include "converters/codecs/DoubleByteForm.h"
#include "converters/loops/DecodeLoop.h"
#include "converters/loops/EncodeLoop.h"

struct vyn::DoubleByteExCodec {
    static constexpr bool supplementary = true;
    static constexpr bool limitBehindMalformed = false;
    static constexpr bool pairsSurrogates = true;

    DoubleByteForm form;
    LookupTable<unsigned int> const* forward;
    LookupTableEx<unsigned short> const* reverse;

    bool ready() const { return forward != nullptr; }

    Decoded decodeOne(unsigned char const* at) const {
        Decoded found = form.decodeOne(at, *forward);
        if (found.value > maxScalarValue)
            found.value &= maxBmpValue; // no scalar value: one unit
        return found;
    }

    Encoded encodeOne(unsigned short const* at) const {
        if (!isHighSurrogate(at[0]))
            return form.encoded(reverse->lookup(at[0]), 1);
        if (!isLowSurrogate(at[1]))
            return {0, 0, 1, Verdict::Unmapped};
        return form.encoded(reverse->lookup(combineSurrogates(at[0], at[1])), 2);
    }
};

VynCharSetConverterDBCSEx::~VynCharSetConverterDBCSEx() = default;

vyn::DoubleByteExCodec VynCharSetConverterDBCSEx::codec() {
    load();
    return {vyn::DoubleByteForm(m_pTypes), forwardTable(), reverseTable()};
}

unsigned long VynCharSetConverterDBCSEx::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                 ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText(codec(), dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterDBCSEx::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                   ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText(codec(), dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterDBCSEx::getNumUnits(void const* src, unsigned long len) {
    return vyn::countDecoded(codec(), src, len);
}

unsigned long VynCharSetConverterDBCSEx::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(codec(), src, len);
}

unsigned int VynCharSetConverterDBCSEx::getMinUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterDBCSEx::getMaxUnitSize() const {
    return 2;
}
unsigned int VynCharSetConverterDBCSEx::getNullCharSize() const {
    return 1;
}
