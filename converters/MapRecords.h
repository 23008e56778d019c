#pragma once

#include <memory>
#include <vynulib/LookupTable.h>

namespace vyn {

/// Calls `enter(code, unit)` for each pair of a compiled map up to its (0, 0), in their order.
template <class Enter>
void forEachRecord(unsigned short const* map, Enter enter) {
    for (; map[0] != 0 || map[1] != 0; map += 2)
        enter(map[0], map[1]);
}

/// The tables of a map in both directions, complete before anybody sees them.
struct TablePair {
    std::unique_ptr<LookupTable<unsigned short>> forward = std::make_unique<LookupTable<unsigned short>>();
    std::unique_ptr<LookupTable<unsigned short>> reverse = std::make_unique<LookupTable<unsigned short>>();
};

inline void enterRecords(LookupTable<unsigned short>& forward, LookupTable<unsigned short>& reverse,
                         unsigned short const* map) {
    forEachRecord(map, [&](unsigned short code, unsigned short unit) {
        forward.insert(code, unit);
        reverse.insert(unit, code);
    });
}

} // namespace vyn
