#include <vynulib/VynUString.h>

#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynUChar.h>

#include "base/PaddedBytes.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr unsigned short whiteSpaceBit = 1;

bool isTrimmed(unsigned short unit, VynUString::TrimTarget target) {
    if (target == VynUString::TRIM_SPACE)
        return unit == ' ';
    unsigned short const classes = VynUChar::getCharClass(unit);
    if ((classes & whiteSpaceBit) != 0)
        return true;
    return target == VynUString::TRIM_WHITESPACE_AND_UNCLASSIFIED && classes == 0;
}

void moveUnits(unsigned short* to, unsigned short const* from, unsigned long count) {
    std::memmove(to, from, count * sizeof(unsigned short));
}

} // namespace

VynUString& VynUString::trim(TrimCmd cmd, TrimTarget target) {
    unsigned short* const units = m_oRep.m_pText;
    unsigned long begin = 0, end = length();
    if ((cmd & TRIM_LEADING) != 0)
        while (begin < end && isTrimmed(units[begin], target))
            ++begin;
    if ((cmd & TRIM_TRAILING) != 0)
        while (end > begin && isTrimmed(units[end - 1], target))
            --end;
    if (begin > 0)
        moveUnits(units, units + begin, end - begin);
    if (end - begin != length())
        endTextAt(end - begin);
    freeSecText();
    return *this;
}

/// Whether `n` units are to be filled up to: cuts, erases and refuses by itself. The room is made first, deliberately:
/// where that takes a new array, nothing of the old text is left.
bool VynUString::prepareResize(unsigned long n) {
    if (n == length())
        return false;
    if (n == npos)
        length_error();
    if (n == 0) {
        erase();
        return false;
    }
    AssureSpace(n);
    freeSecText();
    if (length() > n) {
        endTextAt(n);
        return false;
    }
    return true;
}

void VynUString::resize(unsigned long n, char c, VynCharSet cs) {
    if (!prepareResize(n))
        return;
    if (m_oRep.m_uHeap == 0 && n > m_uInlineWritten)
        std::fill(m_aInline + m_uInlineWritten, m_aInline + n, static_cast<unsigned short>(0));
    unsigned long const count = n - length();
    vyn::PaddedBytes bytes(count);
    std::memset(bytes.data(), c, count);
    // Deliberate: however few units the bytes make, the length becomes `n`.
    VynCharSetConverter::getConverter(cs)->toUTF16(m_oRep.m_pText + length(), bytes.data(), count, ILLCHAR_REPLACE,
                                                   nullptr, -1);
    endTextAt(n);
}

void VynUString::resize(unsigned long n, unsigned short u) {
    if (!prepareResize(n))
        return;
    std::fill(m_oRep.m_pText + length(), m_oRep.m_pText + n, u);
    endTextAt(n);
}

VynUString VynUString::left(unsigned long n) const {
    if (n > length())
        range_error();
    return VynUString(*this, 0, n);
}

VynUString VynUString::mid(unsigned long p, unsigned long n) const {
    if (n == npos)
        n = length() - p;
    if (p + n > length()) // wraps, deliberately: to the end from behind the end is empty
        range_error();
    return VynUString(*this, p, n);
}

VynUString& VynUString::replace(unsigned long p, unsigned long n, VynUString const& s, unsigned long q,
                                unsigned long k) {
    if (p > length() || q > s.length())
        range_error();
    unsigned long const removed = std::min(n, length() - p);
    unsigned long const inserted = std::min(k, s.length() - q);
    unsigned long const kept = length() - removed;
    if (inserted > maxLength - kept)
        length_error();
    if (kept + inserted == 0)
        return erase();
    if (kept + inserted > capacity())
        replaceInNewArray(p, removed, s.data() + q, inserted);
    else
        replaceInPlace(p, removed, s, q, inserted);
    freeSecText();
    return *this;
}

void VynUString::replaceInNewArray(unsigned long p, unsigned long removed, unsigned short const* source,
                                   unsigned long inserted) {
    unsigned long const tail = length() - p - removed;
    VynUString result;
    result.makeRoom(p + inserted + tail);
    unsigned short* const units = result.m_oRep.m_pText;
    moveUnits(units, data(), p);
    moveUnits(units + p, source, inserted);
    moveUnits(units + p + inserted, data() + p + removed, tail);
    result.endTextAt(p + inserted + tail);
    *this = std::move(result);
}

void VynUString::replaceInPlace(unsigned long p, unsigned long removed, VynUString const& s, unsigned long q,
                                unsigned long inserted) {
    unsigned short* const gap = m_oRep.m_pText + p;
    unsigned short const* const source = s.data() + q;
    unsigned long const tail = length() - p - removed;
    unsigned long const newLength = p + inserted + tail;
    if (inserted <= removed) { // the gap has room for the source before the tail moves
        moveUnits(gap, source, inserted);
        moveUnits(gap + inserted, gap + removed, tail);
    } else {
        moveUnits(gap + inserted, gap + removed, tail);
        moveUnits(gap, source, inserted);
        if (&s == this && q + inserted > p + removed) { // part of the source was tail, and has moved on
            unsigned long const fromTail = std::min(inserted, q + inserted - (p + removed));
            moveUnits(gap + inserted - fromTail, source + inserted - fromTail + (inserted - removed), fromTail);
        }
    }
    endTextAt(newLength);
}

VynUString& VynUString::replace(unsigned short const* f, unsigned short const* l, VynUString const& s) {
    unsigned short const* const begin = data();
    unsigned short const* const end = begin + length();
    if (f < begin || f > end || l < begin || l > end)
        range_error();
    // Deliberate: with `f` behind `l` the count wraps, and everything from `f` on goes.
    return replace(static_cast<unsigned long>(f - begin), static_cast<unsigned long>(l - f), s, 0, s.length());
}

VynUString& VynUString::erase(unsigned long p, unsigned long n) {
    if (empty())
        return *this;
    if (p == 0 && n >= length())
        return erase();
    return replace(p, n, VynUString(), 0, 0);
}

VynUString VynUString::operator+(char c) const {
    return *this + VynUString(c);
}

VynUString VynUString::operator+(unsigned short u) const {
    return *this + VynUString(u);
}

VynUString VynUString::operator+(char const* s) const {
    return *this + VynUString(s);
}

VynUString VynUString::operator+(unsigned short const* s) const {
    return *this + VynUString(s);
}

VynUString VynUString::operator+(VynUString const& s) const {
    if (s.length() > maxLength - length())
        length_error();
    VynUString result;
    result.makeRoom(length() + s.length());
    moveUnits(result.m_oRep.m_pText, data(), length());
    moveUnits(result.m_oRep.m_pText + length(), s.data(), s.length());
    result.endTextAt(length() + s.length());
    return result;
}

namespace {

VynUString joined(VynUString left, VynUString const& right) {
    left.replace(left.length(), 0, right, 0, right.length());
    return left;
}

} // namespace

VynUString operator+(char c, VynUString const& s) {
    return joined(VynUString(c), s);
}

VynUString operator+(unsigned short u, VynUString const& s) {
    return joined(VynUString(u), s);
}

VynUString operator+(char const* left, VynUString const& s) {
    return joined(VynUString(left), s);
}

VynUString operator+(unsigned short const* left, VynUString const& s) {
    return joined(VynUString(left), s);
}
