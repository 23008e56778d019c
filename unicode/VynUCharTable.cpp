#include <vynulib/VynUCharTable.h>

#include "base/LazyBuilder.h"
#include "unicode/UnitRanges.h"

VynUCharTable::~VynUCharTable() {
    vyn::LazyBuilder::release(m_table);
}

LookupTable<unsigned short> const& VynUCharTable::loaded() {
    return vyn::LazyBuilder::build(m_table, [this] {
        auto table = std::make_unique<LookupTable<unsigned short>>();
        vyn::forUnitsIn(m_pRanges, m_bCounting,
                        [&](unsigned short unit, unsigned short value) { table->insert(unit, value); });
        return table;
    });
}
