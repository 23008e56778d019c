#include <vynulib/VynCharSetConverterDBCS.h>

#include "base/LazyBuilder.h"
#include "converters/codecs/DoubleByte.h"
#include "converters/loops/Count.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

VynCharSetConverterDBCS::~VynCharSetConverterDBCS() = default;

void VynCharSetConverterDBCS::load() {
    auto const codecOf = [this](vyn::MultibyteTables const* tables) {
        return vyn::DoubleByteCodec{{m_pTypes}, {tables}};
    };
    if (map())
        vyn::LazyBuilder::build(m_tables,
                                [&] { return vyn::makeTablesWithRows<vyn::MultibyteTables>(codecOf, map()); });
}

vyn::DoubleByteCodec VynCharSetConverterDBCS::codec() {
    load();
    return {{m_pTypes}, {m_tables.get()}};
}

unsigned long VynCharSetConverterDBCS::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                               ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText([this] { return codec(); }, dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterDBCS::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                 ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText([this] { return codec(); }, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterDBCS::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits([this] { return vyn::DoubleByteForm{m_pTypes}; }, src, len);
}

unsigned long VynCharSetConverterDBCS::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes([this] { return codec(); }, src, len);
}
