#include <vynulib/VynCharSetConverterEUC_CN_KR.h>

#include "base/LazyBuilder.h"
#include "converters/codecs/EucCnKr.h"
#include "converters/loops/Count.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

VynCharSetConverterEUC_CN_KR::~VynCharSetConverterEUC_CN_KR() = default;

void VynCharSetConverterEUC_CN_KR::load() {
    auto const codecOf = [](vyn::MultibyteTables const* tables) { return vyn::EucCnKrCodec{{}, {tables}}; };
    if (map())
        vyn::LazyBuilder::build(m_tables,
                                [&] { return vyn::makeTablesWithRows<vyn::MultibyteTables>(codecOf, map()); });
}

vyn::EucCnKrCodec VynCharSetConverterEUC_CN_KR::codec() {
    load();
    return {{}, {m_tables.get()}};
}

unsigned long VynCharSetConverterEUC_CN_KR::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                    ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText([this] { return codec(); }, dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterEUC_CN_KR::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                      ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText([this] { return codec(); }, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterEUC_CN_KR::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits([] { return vyn::EucCnKrForm(); }, src, len);
}

unsigned long VynCharSetConverterEUC_CN_KR::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes([this] { return codec(); }, src, len);
}
