#include "string/CaseMaps.h"

#include "base/LazyBuilder.h"
#include "base/LoadedObject.h"
#include "tables/Tables.h"
#include "unicode/UnitRanges.h"

#include <numeric>

namespace vyn {

constinit LazyCaseMap upperCase(asciiSmall, toUpperTable);
constinit LazyCaseMap lowerCase(asciiCapitals, toLowerTable);

CaseMap const& LazyCaseMap::map() {
    return LazyBuilder::build(m_map, [this] {
        std::unique_ptr<CaseMap> map(new CaseMap); // not cleared first
        map->changed = m_eChanged;
        std::iota(std::begin(map->of), std::end(map->of), static_cast<unsigned short>(0));
        forUnitsIn(m_pRanges, true, [&](unsigned short unit, unsigned short value) { map->of[unit] = value; });
        return map;
    });
}

void LazyCaseMap::release() noexcept {
    LazyBuilder::release(m_map);
}

namespace {

[[gnu::destructor]] void unload() {
    if (processIsEnding())
        return;
    upperCase.release();
    lowerCase.release();
}

} // namespace
} // namespace vyn
