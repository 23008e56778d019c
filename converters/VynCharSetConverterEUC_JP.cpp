#include <vynulib/VynCharSetConverterEUC_JP.h>

#include "base/LazyBuilder.h"
#include "converters/codecs/EucJp.h"
#include "converters/loops/Count.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

VynCharSetConverterEUC_JP::~VynCharSetConverterEUC_JP() = default;

void VynCharSetConverterEUC_JP::load() {
    // What the strict codec takes for a character is one for the other too.
    auto const codecOf = [](vyn::EucJpTables const* tables) { return vyn::StrictEucJpCodec{{{tables}}}; };
    if (map())
        vyn::LazyBuilder::build(m_tables, [&] {
            return vyn::makeTablesWithRows<vyn::EucJpTables>(codecOf, map(), m_pJIS0201Map, m_pJIS0212Map);
        });
}

vyn::EucJpCodec VynCharSetConverterEUC_JP::codec() {
    load();
    return {{static_cast<vyn::EucJpTables const*>(m_tables.get())}};
}

unsigned long VynCharSetConverterEUC_JP::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                 ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText([this] { return codec(); }, dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterEUC_JP::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                   ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText([this] { return codec(); }, dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterEUC_JP::getNumUnits(void const* src, unsigned long len) {
    return vyn::countUnits([this] { return codec(); }, src, len);
}

unsigned long VynCharSetConverterEUC_JP::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes([this] { return codec(); }, src, len);
}
