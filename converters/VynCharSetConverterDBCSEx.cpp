#include <vynulib/VynCharSetConverterDBCSEx.h>

#include "converters/DecodeLoop.h"
#include "converters/DoubleByteForm.h"
#include "converters/EncodeLoop.h"

namespace {

struct DoubleByteExCodec {
    static constexpr bool supplementary = true;
    static constexpr bool limitBehindMalformed = false;
    static constexpr bool pairsSurrogates = true;

    vyn::DoubleByteForm form;
    LookupTable<unsigned int> const* forward;
    LookupTableEx<unsigned short> const* reverse;

    bool ready() const { return forward != nullptr; }

    vyn::Decoded decodeOne(unsigned char const* at) const {
        vyn::Decoded found = form.decodeOne(at, *forward);
        if (found.value > vyn::maxScalarValue)
            found.value &= vyn::maxBmpValue; // no scalar value: one unit
        return found;
    }

    vyn::Encoded encodeOne(unsigned short const* at) const {
        if (!vyn::isHighSurrogate(at[0]))
            return form.encoded(reverse->lookup(at[0]), 1);
        if (!vyn::isLowSurrogate(at[1]))
            return {0, 0, 1, vyn::Verdict::Unmapped};
        return form.encoded(reverse->lookup(vyn::combineSurrogates(at[0], at[1])), 2);
    }
};

} // namespace

VynCharSetConverterDBCSEx::~VynCharSetConverterDBCSEx() = default;

unsigned long VynCharSetConverterDBCSEx::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                 ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    load();
    DoubleByteExCodec const codec{vyn::DoubleByteForm(m_pTypes), forwardTable(), reverseTable()};
    return vyn::decodeText(codec, dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterDBCSEx::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                   ILLCHAR_OPTYPE op, bool* illegal) {
    load();
    DoubleByteExCodec const codec{vyn::DoubleByteForm(m_pTypes), forwardTable(), reverseTable()};
    return vyn::encodeText(codec, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterDBCSEx::getNumUnits(void const* src, unsigned long len) {
    load();
    DoubleByteExCodec const codec{vyn::DoubleByteForm(m_pTypes), forwardTable(), reverseTable()};
    return vyn::countDecoded(codec, src, len);
}

unsigned long VynCharSetConverterDBCSEx::getNumBytes(unsigned short const* src, unsigned long len) {
    load();
    DoubleByteExCodec const codec{vyn::DoubleByteForm(m_pTypes), forwardTable(), reverseTable()};
    return vyn::countBytes(codec, src, len);
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
