#include <vynulib/VynUCharTable.h>

#include "base/LazyBuilder.h"

VynUCharTable::~VynUCharTable() {
    vyn::LazyBuilder::release(m_table);
}

LookupTable<unsigned short> const& VynUCharTable::loaded() {
    return vyn::LazyBuilder::build(m_table, [this] {
        auto table = std::make_unique<LookupTable<unsigned short>>();
        for (unsigned short const* range = m_pRanges; range[0] != 0; range += 3) {
            unsigned value = range[2];
            for (unsigned unit = range[0]; unit <= range[1]; ++unit) {
                table->insert(static_cast<unsigned short>(unit), static_cast<unsigned short>(value));
                value += m_bCounting;
            }
        }
        return table;
    });
}
