#include <vynulib/VynCharSetConverterMBCS.h>

#include "base/BuildOnce.h"
#include "converters/MapRecords.h"

VynCharSetConverterMBCS::~VynCharSetConverterMBCS() {
    delete forwardTable();
    delete m_pReverse;
    pthread_mutex_destroy(&m_mutex);
}

void VynCharSetConverterMBCS::load() {
    vyn::buildOnce(m_pForward, m_mutex, [this]() -> Table* {
        if (!m_pTable)
            return nullptr;
        vyn::TablePair tables;
        vyn::enterRecords(*tables.forward, *tables.reverse, m_pTable);
        m_pReverse = tables.reverse.release();
        return tables.forward.release();
    });
}
