#include <vynulib/VynUString.h>

#include "converters/kernels/Kernels.h"
#include "string/CaseMaps.h"
#include "string/UnitCase.h"

#include <algorithm>

namespace {

constexpr auto exact = [](unsigned short unit) { return unit; };

// -1, 0 or 1 as the first `count` units decide: by a difference that folding leaves, up to a zero unit in both.
template <class Fold>
int comparePointers(unsigned short const* a, unsigned short const* b, unsigned long count, Fold fold) {
    if (count == 0)
        return 0;
    if (a == nullptr || b == nullptr)
        return (a != nullptr) - (b != nullptr);
    for (unsigned long i = 0; i < count; ++i) {
        if (a[i] != b[i]) {
            unsigned short const left = fold(a[i]), right = fold(b[i]);
            if (left != right)
                return left < right ? -1 : 1;
        } else if (a[i] == 0) {
            return 0;
        }
    }
    return 0;
}

// The same for texts of which `count` units can be read, whatever they hold: the unit decides that ends what is the same.
int compareTexts(unsigned short const* a, unsigned short const* b, unsigned long count) {
    unsigned long const same = vyn::kernels.sameUnits(a, b, count);
    return comparePointers(a + same, b + same, count - same, exact);
}

int compareTextsNoCase(unsigned short const* a, unsigned short const* b, unsigned long count) {
    unsigned long same = vyn::kernels.sameUnitsNoCase(a, b, count, vyn::upperCase.built());
    if (same < count && (a[same] | b[same]) > vyn::lastAscii)
        same += vyn::kernels.sameUnitsNoCase(a + same, b + same, count - same, &vyn::upperCase.map());
    return comparePointers(a + same, b + same, count - same, vyn::upper);
}

// The units of both texts that are there to compare: the terminator of the shorter one is the last.
unsigned long comparable(VynUString const& a, VynUString const& b, unsigned long n) {
    return std::min(n, std::min(a.length(), b.length()) + 1);
}

// How a text of bytes or of units, on the left of an operator, compares.
template <class Element>
int order(Element const* a, VynUString const& b) {
    return VynUString(a).compare(b);
}

} // namespace

int VynUString::canonicalCompare(unsigned short const* a, unsigned short const* b, unsigned long n) const {
    return comparePointers(a, b, n, exact);
}

int VynUString::canonicalCompareNoCase(unsigned short const* a, unsigned short const* b, unsigned long n) const {
    return comparePointers(a, b, n, vyn::upper);
}

int VynUString::compare(VynUString const& other, unsigned long n) const {
    if (m_pRep == other.m_pRep)
        return 0;
    return compareTexts(data(), other.data(), comparable(*this, other, n));
}

int VynUString::compareNoCase(VynUString const& other, unsigned long n) const {
    if (m_pRep == other.m_pRep)
        return 0;
    return compareTextsNoCase(data(), other.data(), comparable(*this, other, n));
}

bool VynUString::operator<(VynUString const& other) const {
    return compare(other, npos) < 0;
}

bool operator==(VynUString const& a, VynUString const& b) {
    return a.compare(b, VynUString::npos) == 0;
}

bool operator!=(VynUString const& a, VynUString const& b) {
    return !(a == b);
}

bool operator==(char const* a, VynUString const& b) {
    return order(a, b) == 0;
}

bool operator!=(char const* a, VynUString const& b) {
    return order(a, b) != 0;
}

bool operator<(char const* a, VynUString const& b) {
    return order(a, b) < 0;
}

bool operator>(char const* a, VynUString const& b) {
    return order(a, b) > 0;
}

bool operator<=(char const* a, VynUString const& b) {
    return order(a, b) <= 0;
}

bool operator>=(char const* a, VynUString const& b) {
    return order(a, b) >= 0;
}

bool operator==(unsigned short const* a, VynUString const& b) {
    return order(a, b) == 0;
}

bool operator!=(unsigned short const* a, VynUString const& b) {
    return order(a, b) != 0;
}

bool operator<(unsigned short const* a, VynUString const& b) {
    return order(a, b) < 0;
}

bool operator>(unsigned short const* a, VynUString const& b) {
    return order(a, b) > 0;
}

bool operator<=(unsigned short const* a, VynUString const& b) {
    return order(a, b) <= 0;
}

bool operator>=(unsigned short const* a, VynUString const& b) {
    return order(a, b) >= 0;
}
