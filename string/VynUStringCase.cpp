#include <vynulib/VynUString.h>

#include "string/UnitCase.h"

namespace {

using Mapping = unsigned short(unsigned short);

// Whether any unit changed.
template <Mapping map>
bool mapUnits(unsigned short* units, unsigned long count) {
    unsigned short changed = 0;
    for (unsigned long i = 0; i < count; ++i) {
        unsigned short const unit = map(units[i]);
        changed = static_cast<unsigned short>(changed | (units[i] ^ unit));
        units[i] = unit;
    }
    return changed != 0;
}

// Loads the table where a unit needs it: memory may run out here, while the text is whole, and not later.
void prepare(VynUCharTable& table, unsigned short const* units, unsigned long count) {
    unsigned short all = 0; // as wide as a unit, so that compilers use vectors
    for (unsigned long i = 0; i < count; ++i)
        all = static_cast<unsigned short>(all | units[i]);
    if (all > vyn::lastAscii)
        table.load();
}

} // namespace

void VynUString::toUpper(bool asciiOnly) {
    unsigned short* const units = m_oRep.m_pText;
    if (!asciiOnly)
        prepare(VynUChar::m_gUpperCaseTable, units, length());
    if (asciiOnly ? mapUnits<vyn::asciiUpper>(units, length()) : mapUnits<vyn::upper>(units, length()))
        freeSecText();
}

void VynUString::toLower(bool asciiOnly) {
    unsigned short* const units = m_oRep.m_pText;
    if (!asciiOnly)
        prepare(VynUChar::m_gLowerCaseTable, units, length());
    if (asciiOnly ? mapUnits<vyn::asciiLower>(units, length()) : mapUnits<vyn::lower>(units, length()))
        freeSecText();
}
