#include <vynulib/VynCharSetConverterMBCSEx.h>

#include "base/LazyBuilder.h"
#include "converters/codecs/MultibyteTables.h"

VynCharSetConverterMBCSEx::~VynCharSetConverterMBCSEx() {
    vyn::LazyBuilder::release(m_tables);
}

void VynCharSetConverterMBCSEx::load() {
    if (m_pTable)
        vyn::LazyBuilder::build(m_tables, [this] { return std::make_unique<vyn::MultibyteExTables>(m_pTable); });
}

VynCharSetConverterMBCSEx::ForwardTable const* VynCharSetConverterMBCSEx::forwardTable() const noexcept {
    auto const* const tables = m_tables.get();
    return tables ? &tables->forward : nullptr;
}

VynCharSetConverterMBCSEx::ReverseTable const* VynCharSetConverterMBCSEx::reverseTable() const noexcept {
    auto const* const tables = m_tables.get();
    return tables ? &tables->reverse : nullptr;
}
