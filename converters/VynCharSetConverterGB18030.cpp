#include <vynulib/VynCharSetConverterGB18030.h>

#include "base/LazyBuilder.h"
#include "converters/codecs/Gb18030.h"
#include "converters/loops/Count.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

VynCharSetConverterGB18030::~VynCharSetConverterGB18030() = default;

void VynCharSetConverterGB18030::load() {
    auto const codecOf = [](vyn::Gb18030Tables const* tables) { return vyn::Gb18030Codec{{tables}}; };
    vyn::LazyBuilder::build(m_tables, [&] { return vyn::makeTablesWithRows<vyn::Gb18030Tables>(codecOf, map()); });
}

vyn::Gb18030Codec VynCharSetConverterGB18030::codec() {
    load();
    return {{map() ? static_cast<vyn::Gb18030Tables const*>(m_tables.get()) : nullptr}};
}

sGB18030Range const* VynCharSetConverterGB18030::getGB2UniRange(unsigned int key) {
    load();
    return static_cast<vyn::Gb18030Tables const*>(m_tables.get())->scalarOfKey.start(key);
}

sGB18030Range const* VynCharSetConverterGB18030::getUni2GBRange(unsigned int unit) {
    load();
    return static_cast<vyn::Gb18030Tables const*>(m_tables.get())->keyOfUnit.start(unit);
}

unsigned long VynCharSetConverterGB18030::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                  ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText([this] { return codec(); }, dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterGB18030::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                    ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText([this] { return codec(); }, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterGB18030::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits([this] { return codec(); }, src, len);
}

unsigned long VynCharSetConverterGB18030::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes([this] { return codec(); }, src, len);
}
