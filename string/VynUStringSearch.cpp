#include <vynulib/VynUString.h>

#include "string/UnitSearch.h"

#include <algorithm>

static_assert(vyn::notFound == VynUString::npos);

namespace {

// How much of `s` an occurrence is compared with: the comparison starts after the first unit, which may be zero, and
// ends with the first zero unit from there on.
unsigned long comparedLength(VynUString const& s) {
    unsigned short const* const end = s.data() + s.length();
    unsigned short const* const zero = std::find(s.data() + 1, end, 0); // inline, as what is sought is mostly short
    return static_cast<unsigned long>(zero - s.data()) + (zero != end);
}

} // namespace

unsigned long VynUString::find(unsigned short c, unsigned long pos) const {
    if (c == 0 || pos >= length())
        return npos;
    unsigned long const at = vyn::findUnit(data() + pos, length() - pos, c);
    return at == npos ? npos : pos + at;
}

unsigned long VynUString::rfind(unsigned short c, unsigned long pos) const {
    if (c == 0 || pos >= length())
        return length() - 1; // deliberate, without a search; `npos` for an empty string
    return vyn::findLastUnit(data(), pos + 1, c);
}

unsigned long VynUString::find(VynUString const& s, unsigned long pos) const {
    if (pos >= length() || s.empty())
        return npos;
    if (&s == this)
        return pos == 0 ? 0 : npos;
    if (s.length() > length() - pos)
        return npos;
    unsigned long const compared = comparedLength(s);
    unsigned long const lastStart = length() - s.length();
    unsigned long const at = vyn::findUnits(data() + pos, lastStart - pos + compared, s.data(), compared);
    return at == npos ? npos : pos + at;
}

unsigned long VynUString::rfind(VynUString const& s, unsigned long pos) const {
    if (empty() || s.empty())
        return npos;
    if (&s == this)
        return 0;
    if (s.length() > length())
        return npos;
    unsigned long const compared = comparedLength(s);
    unsigned long const lastStart = std::min(pos, length() - s.length());
    return vyn::findLastUnits(data(), lastStart + compared, s.data(), compared);
}
