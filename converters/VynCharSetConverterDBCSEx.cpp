#include <vynulib/VynCharSetConverterDBCSEx.h>

#include "base/LazyBuilder.h"
#include "converters/codecs/DoubleByte.h"
#include "converters/loops/Count.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

VynCharSetConverterDBCSEx::~VynCharSetConverterDBCSEx() = default;

void VynCharSetConverterDBCSEx::load() {
    auto const codecOf = [this](vyn::MultibyteExTables const* tables) {
        return vyn::DoubleByteExCodec{{m_pTypes}, {tables}};
    };
    if (map())
        vyn::LazyBuilder::build(m_tables,
                                [&] { return vyn::makeTablesWithRows<vyn::MultibyteExTables>(codecOf, map()); });
}

vyn::DoubleByteExCodec VynCharSetConverterDBCSEx::codec() {
    load();
    return {{m_pTypes}, {m_tables.get()}};
}

unsigned long VynCharSetConverterDBCSEx::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                 ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText([this] { return codec(); }, dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterDBCSEx::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                   ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText([this] { return codec(); }, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterDBCSEx::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits([this] { return codec(); }, src, len);
}

unsigned long VynCharSetConverterDBCSEx::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes([this] { return codec(); }, src, len);
}
