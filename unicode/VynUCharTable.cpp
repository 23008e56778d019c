#include <vynulib/VynUCharTable.h>

#include "base/BuildOnce.h"

#include <memory>

VynUCharTable::~VynUCharTable() {
    delete m_pTable.load(std::memory_order_relaxed);
    pthread_mutex_destroy(&m_oMutex);
}

void VynUCharTable::load() {
    vyn::buildOnce(m_pTable, m_oMutex, [this] {
        auto table = std::make_unique<LookupTable<unsigned short>>();
        for (unsigned short const* range = m_pRanges; range[0] != 0; range += 3) {
            unsigned value = range[2];
            for (unsigned unit = range[0]; unit <= range[1]; ++unit) {
                table->insert(static_cast<unsigned short>(unit), static_cast<unsigned short>(value));
                value += m_bCounting;
            }
        }
        return table.release();
    });
}
