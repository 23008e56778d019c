#include <vynulib/VynCharSetConverterDBCS.h>

#include "converters/codecs/DoubleByteForm.h"
#include "converters/loops/DecodeLoop.h"
#include "converters/loops/EncodeLoop.h"

struct vyn::DoubleByteCodec {
    static constexpr bool supplementary = false;
    static constexpr bool limitBehindMalformed = false;
    static constexpr bool pairsSurrogates = false;

    DoubleByteForm form;
    LookupTable<unsigned short> const* forward;
    LookupTable<unsigned short> const* reverse;

    bool ready() const { return forward != nullptr; }
    Decoded decodeOne(unsigned char const* at) const { return form.decodeOne(at, *forward); }
    Decoded decodeAhead(unsigned char const* at) const { return form.decodeAhead(at, *forward); }
    Encoded encodeOne(unsigned short const* at) const { return form.encoded(reverse->lookup(*at), 1); }
};

VynCharSetConverterDBCS::~VynCharSetConverterDBCS() = default;

vyn::DoubleByteCodec VynCharSetConverterDBCS::codec() {
    load();
    return {vyn::DoubleByteForm(m_pTypes), forwardTable(), reverseTable()};
}

unsigned long VynCharSetConverterDBCS::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                               ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText(codec(), dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterDBCS::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                 ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText(codec(), dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterDBCS::getNumUnits(void const* src, unsigned long len) {
    vyn::DoubleByteForm const form(m_pTypes);
    return vyn::countUnits(src, len, [form](unsigned char const* at, unsigned long bytesLeft) {
        bool const pair = bytesLeft >= 2 && form.isLead(at[0]) && form.isTrail(at[1]);
        return vyn::Counted{pair ? 2U : 1U, 1};
    });
}

unsigned long VynCharSetConverterDBCS::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(codec(), src, len);
}

unsigned int VynCharSetConverterDBCS::getMinUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterDBCS::getMaxUnitSize() const {
    return 2;
}
unsigned int VynCharSetConverterDBCS::getNullCharSize() const {
    return 1;
}
