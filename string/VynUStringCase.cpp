#include <vynulib/VynUString.h>

#include "converters/kernels/Kernels.h"
#include "string/CaseMaps.h"
#include "string/UnitCase.h"

namespace {

bool isAscii(unsigned short const* units, unsigned long count) {
    unsigned short all = 0; // as wide as a unit, so that compilers use vectors
    for (unsigned long i = 0; i < count; ++i)
        all = static_cast<unsigned short>(all | units[i]);
    return all <= vyn::lastAscii;
}

// Builds the map where a unit needs it: memory may run out here, while the text is whole, and not later. Returns whether
// any unit changed.
bool changeCase(vyn::LazyCaseMap& lazyMap, unsigned short* units, unsigned long count, bool asciiOnly) {
    if (asciiOnly || (!lazyMap.built() && isAscii(units, count)))
        return vyn::kernels.changeAsciiCase(units, count, lazyMap.changedInAscii());
    return vyn::kernels.changeCase(units, count, lazyMap.map());
}

} // namespace

void VynUString::toUpper(bool asciiOnly) {
    if (changeCase(vyn::upperCase, m_oRep.m_pText, length(), asciiOnly))
        freeSecText();
}

void VynUString::toLower(bool asciiOnly) {
    if (changeCase(vyn::lowerCase, m_oRep.m_pText, length(), asciiOnly))
        freeSecText();
}
