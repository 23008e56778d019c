#include <vynulib/VynCharSetConverterMBCSEx.h>

#include "base/BuildOnce.h"

#include <memory>

VynCharSetConverterMBCSEx::~VynCharSetConverterMBCSEx() {
    delete forwardTable();
    delete m_pReverse;
    pthread_mutex_destroy(&m_mutex);
}

void VynCharSetConverterMBCSEx::load() {
    vyn::buildOnce(m_pForward, m_mutex, [this]() -> ForwardTable* {
        if (!m_pTable)
            return nullptr;
        auto forward = std::make_unique<ForwardTable>();
        auto reverse = std::make_unique<ReverseTable>();
        for (sMBCSExTable const* record = m_pTable; record->code != 0 || record->unicode != 0; ++record) {
            auto const code = static_cast<unsigned short>(record->code);
            forward->insert(code, record->unicode);
            reverse->insert(record->unicode, code);
        }
        m_pReverse = reverse.release();
        return forward.release();
    });
}
