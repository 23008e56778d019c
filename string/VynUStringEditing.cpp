#include <vynulib/VynUString.h>

#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynUChar.h>

#include "base/PaddedBytes.h"
#include "string/Draft.h"

#include <algorithm>
#include <cstring>
#include <functional>

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

// In a text, `removed` units at `start`, before `tail` more, give way to `inserted` units of `source`.
struct Replacement {
    unsigned long start, removed;
    unsigned short const* source;
    unsigned long inserted, tail;

    void assemble(unsigned short* to, unsigned short const* text) const {
        moveUnits(to, text, start);
        moveUnits(to + start, source, inserted);
        moveUnits(to + start + inserted, text + start + removed, tail);
    }

    void applyInPlace(unsigned short* text) const {
        unsigned short* const gap = text + start;
        unsigned short* const oldTail = gap + removed;
        if (inserted <= removed) { // the gap has room for the source before the tail moves
            moveUnits(gap, source, inserted);
            moveUnits(gap + inserted, oldTail, tail);
            return;
        }
        moveUnits(gap + inserted, oldTail, tail);
        moveUnits(gap, source, inserted);
        unsigned short const* const sourceEnd = source + inserted;
        bool const withinText = !std::less<>()(source, text) && std::less<>()(source, oldTail + tail);
        if (withinText && sourceEnd > oldTail) { // part of the source was tail, and has moved on
            auto const fromTail = std::min(inserted, static_cast<unsigned long>(sourceEnd - oldTail));
            moveUnits(gap + inserted - fromTail, sourceEnd - fromTail + (inserted - removed), fromTail);
        }
    }
};

} // namespace

VynUString& VynUString::trim(TrimCmd cmd, TrimTarget target) {
    Draft draft(*this, length());
    unsigned short* const units = draft.units();
    unsigned long begin = 0, end = length();
    if ((cmd & TRIM_LEADING) != 0)
        while (begin < end && isTrimmed(units[begin], target))
            ++begin;
    if ((cmd & TRIM_TRAILING) != 0)
        while (end > begin && isTrimmed(units[end - 1], target))
            --end;
    if (begin > 0)
        moveUnits(units, units + begin, end - begin);
    draft.keep(end - begin);
    return *this;
}

/// Whether there are units to fill, up to `n`: cuts, erases and refuses by itself.
bool VynUString::cutOrGrow(unsigned long n) {
    if (n == npos)
        length_error();
    if (n < length())
        Draft(*this, n).keep(n);
    return n > length();
}

void VynUString::resize(unsigned long n, char c, VynCharSet cs) {
    if (!cutOrGrow(n))
        return;
    Draft draft(*this, n);
    unsigned long const start = draft.isNewArray() ? 0 : length(); // deliberate: nothing of the old text in a new array
    vyn::PaddedBytes bytes(n - start);
    std::memset(bytes.data(), c, n - start);
    draft.clearUnwritten();
    // Deliberate: however few units the bytes make, the length becomes `n`.
    VynCharSetConverter::getConverter(cs)->toUTF16(draft.units() + start, bytes.data(), n - start, ILLCHAR_REPLACE,
                                                   nullptr, -1);
    draft.keep(n);
}

void VynUString::resize(unsigned long n, unsigned short u) {
    if (!cutOrGrow(n))
        return;
    Draft draft(*this, n);
    std::fill(draft.units() + (draft.isNewArray() ? 0 : length()), draft.units() + n, u);
    draft.keep(n);
}

VynUString VynUString::left(unsigned long n) const {
    if (n > length())
        range_error();
    return VynUString(*this, 0, n);
}

VynUString VynUString::mid(unsigned long p, unsigned long n) const {
    if (n == npos)
        n = length() - p;
    if (p + n > length()) // wraps, deliberately: to the end from past the end is empty
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
    Draft draft(*this, kept + inserted);
    Replacement const replacement = {p, removed, s.data() + q, inserted, length() - p - removed};
    if (draft.isNewArray())
        replacement.assemble(draft.units(), data());
    else
        replacement.applyInPlace(draft.units());
    draft.keep(kept + inserted);
    return *this;
}

VynUString& VynUString::replace(unsigned short const* f, unsigned short const* l, VynUString const& s) {
    unsigned short const* const begin = data();
    unsigned short const* const end = begin + length();
    if (f < begin || f > end || l < begin || l > end)
        range_error();
    // Deliberate: with `f` after `l` the count wraps, and everything from `f` on goes.
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
    Draft draft(result, length() + s.length());
    moveUnits(draft.units(), data(), length());
    moveUnits(draft.units() + length(), s.data(), s.length());
    draft.keep(length() + s.length());
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
