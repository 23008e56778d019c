#include <vynulib/VynCharSetConverterSBCS.h>

#include "base/LazyBuilder.h"
#include "converters/codecs/SingleByte.h"
#include "converters/kernels/TextScan.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

VynCharSetConverterSBCS::~VynCharSetConverterSBCS() {
    vyn::LazyBuilder::release(m_tables);
}

void VynCharSetConverterSBCS::load() {
    if (m_pMap)
        vyn::LazyBuilder::build(m_tables, [this] { return std::make_unique<vyn::SingleByteTables>(m_pMap); });
}

vyn::SingleByteCodec VynCharSetConverterSBCS::codec() {
    load();
    return {m_tables.get()};
}

unsigned long VynCharSetConverterSBCS::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                               ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    // Unlike the multibyte sets, this one reads nothing for a limit of 0.
    unsigned long const room = maxSrc == 0 ? 0 : dstUnits;
    return vyn::decodeText([this] { return codec(); }, dst, src, room, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterSBCS::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                 ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText([this] { return codec(); }, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterSBCS::getNumUnits(void const* src, unsigned long len) {
    return src ? vyn::lengthWithin(static_cast<unsigned char const*>(src), len) : 0;
}

unsigned long VynCharSetConverterSBCS::getNumBytes(unsigned short const* src, unsigned long len) {
    return src ? vyn::lengthWithin(src, len) : 0;
}
