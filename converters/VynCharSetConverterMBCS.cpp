#include <vynulib/VynCharSetConverterMBCS.h>

#include "base/LazyBuilder.h"
#include "converters/codecs/MultibyteTables.h"

VynCharSetConverterMBCS::~VynCharSetConverterMBCS() {
    vyn::LazyBuilder::release(m_tables);
}

void VynCharSetConverterMBCS::load() {
    if (m_pTable)
        vyn::LazyBuilder::build(m_tables, [this] { return std::make_unique<vyn::MultibyteTables>(m_pTable); });
}

VynCharSetConverterMBCS::Table const* VynCharSetConverterMBCS::forwardTable() const noexcept {
    auto const* const tables = m_tables.get();
    return tables && m_pTable ? &tables->forward : nullptr;
}

VynCharSetConverterMBCS::Table const* VynCharSetConverterMBCS::reverseTable() const noexcept {
    auto const* const tables = m_tables.get();
    return tables && m_pTable ? &tables->reverse : nullptr;
}
