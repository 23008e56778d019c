#pragma once

#include "base/CheckedReads.h"
#include "converters/kernels/Kernels.h"

#include <cstring>

namespace vyn {

/// The units before the first zero unit of `text`, at most `maxUnits`, without vectors: for an even address
/// and a bound above 0, where reads are not watched, by aligned words and blocks; for any, unit by unit.
unsigned long unitLengthByWords(unsigned short const* text, unsigned long maxUnits);
unsigned long unitLengthByUnits(unsigned short const* text, unsigned long maxUnits);

/// The elements before the first zero element of `text`, at most `most`. After that element or the bound, it reads only what
/// lies in the same page, and nothing where reads are watched (`readsAreChecked`).
inline unsigned long lengthWithin(unsigned char const* text, unsigned long most) {
    if (readsAreChecked || most == 0)
        return strnlen(reinterpret_cast<char const*>(text), most);
    return kernels.byteLength(text, most);
}
inline unsigned long lengthWithin(unsigned short const* text, unsigned long most) {
    if (readsAreChecked || most == 0 || reinterpret_cast<std::uintptr_t>(text) % sizeof *text != 0)
        return unitLengthByUnits(text, most);
    return kernels.unitLength(text, most);
}

} // namespace vyn
