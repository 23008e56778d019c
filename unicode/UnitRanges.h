#pragma once

namespace vyn {

/// Calls `visit(unit, value)` for each unit in a list of ranges as `VynUCharTable` takes it.
template <class Visit>
void forUnitsIn(unsigned short const* ranges, bool counting, Visit visit) {
    for (unsigned short const* range = ranges; range[0] != 0; range += 3) {
        unsigned value = range[2];
        for (unsigned unit = range[0]; unit <= range[1]; ++unit) {
            visit(static_cast<unsigned short>(unit), static_cast<unsigned short>(value));
            value += counting;
        }
    }
}

} // namespace vyn
