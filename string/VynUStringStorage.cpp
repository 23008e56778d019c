#include <vynulib/VynUString.h>

#include <vynulib/VynCharSetConverter.h>

#include "base/PaddedBytes.h"
#include "base/UnitScan.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

namespace {

unsigned short* newUnits(unsigned long n) {
    if (n >= VynUString::npos / sizeof(unsigned short))
        throw std::bad_array_new_length();
    return new unsigned short[n + 1];
}

} // namespace

void VynUString::range_error() {
    throw std::out_of_range("invalid string index given");
}

void VynUString::length_error() {
    throw std::length_error("exceed maximum string length");
}

VynUString::Representation* VynUString::SetupSpace() {
    m_oRep = {0, m_aInline, 0, inlineCapacity, nullptr, 0, static_cast<VynCharSet>(-1)};
    endTextAt(0);
    return &m_oRep;
}

VynUString::Representation* VynUString::SetupSpace(unsigned long n) {
    SetupSpace();
    AssureSpace(n);
    return &m_oRep;
}

void VynUString::initForAlloc() {
    m_pRep = SetupSpace();
}

void VynUString::AssureSpace(unsigned long n) {
    if (makeRoom(n))
        endFillAt(0, true);
}

/// Whether a new array was taken, whose units are not set but for a zero unit at its start.
bool VynUString::makeRoom(unsigned long n) {
    if (m_oRep.m_ulCapacity >= n)
        return false;
    unsigned short* const units = newUnits(n);
    releaseText();
    m_oRep.m_uHeap = 1;
    m_oRep.m_pText = units;
    m_oRep.m_ulCapacity = n;
    endTextAt(0);
    return true;
}

void VynUString::endTextAt(unsigned long n) noexcept {
    m_oRep.m_pText[n] = 0;
    m_oRep.m_ulLength = n;
    if (m_oRep.m_uHeap == 0 && n >= m_uInlineWritten)
        m_uInlineWritten = static_cast<unsigned int>(n + 1);
}

/// Ends the text at `n`; clears the rest of an array that is fresh from `makeRoom`.
void VynUString::endFillAt(unsigned long n, bool fresh) noexcept {
    endTextAt(n);
    if (fresh)
        std::fill(m_oRep.m_pText + n, m_oRep.m_pText + m_oRep.m_ulCapacity + 1, static_cast<unsigned short>(0));
}

/// `units` may be part of this string's own text, which always fits without a new array.
void VynUString::fill(unsigned short const* units, unsigned long n) {
    makeRoom(n);
    std::memmove(m_oRep.m_pText, units, n * sizeof(unsigned short));
    endTextAt(n);
}

/// Takes as many units as the converter counts in `byteCount` bytes; none erase the string.
void VynUString::convert(void const* bytes, unsigned long byteCount, VynCharSet cs, int maxSrc) {
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
    unsigned long const units = converter.getNumUnits(bytes, byteCount);
    if (units == 0) {
        erase();
        return;
    }
    bool const fresh = makeRoom(units);
    endFillAt(converter.toUTF16(m_oRep.m_pText, bytes, units, ILLCHAR_REPLACE, nullptr, maxSrc), fresh);
}

void VynUString::convertUnterminated(char const* bytes, unsigned long byteCount, VynCharSet cs, int maxSrc) {
    vyn::PaddedBytes padded(byteCount);
    std::memcpy(padded.data(), bytes, byteCount);
    convert(padded.data(), byteCount, cs, maxSrc);
}

void VynUString::freeSecText() {
    delete[] m_oRep.m_pSecText;
    m_oRep.m_pSecText = nullptr;
}

void VynUString::releaseText() noexcept {
    if (m_oRep.m_uHeap != 0)
        delete[] m_oRep.m_pText;
}

/// Moves what `o` holds into this string, which holds nothing yet, and leaves `o` empty.
void VynUString::takeOver(VynUString& o) noexcept {
    initForAlloc();
    Representation const taken = o.m_oRep;
    if (taken.m_uHeap != 0) {
        m_oRep = taken;
    } else {
        std::memcpy(m_aInline, taken.m_pText, taken.m_ulLength * sizeof(unsigned short));
        endTextAt(taken.m_ulLength);
        m_oRep.m_pSecText = taken.m_pSecText;
        m_oRep.m_ulSecLength = taken.m_ulSecLength;
        m_oRep.m_eSecCharSet = taken.m_eSecCharSet;
    }
    o.initForAlloc();
}

VynUString::VynUString() noexcept {
    initForAlloc();
}

VynUString::VynUString(VynUString const& o) : VynUString() {
    fill(o.data(), o.length());
}

VynUString::VynUString(VynUString&& o) noexcept {
    takeOver(o);
}

VynUString::VynUString(VynUString const& o, unsigned long p, unsigned long n) : VynUString() {
    unsigned long const from = std::min(p, o.length());
    fill(o.data() + from, std::min(o.length() - from, n));
}

VynUString::VynUString(char c, VynCharSet cs) : VynUString() {
    if (c != 0)
        convertUnterminated(&c, 1, cs, -1);
}

VynUString::VynUString(char c, unsigned long m, VynCharSet cs) : VynUString() {
    if (c == 0 || m == 0)
        return;
    vyn::PaddedBytes bytes(m);
    std::memset(bytes.data(), c, m);
    convert(bytes.data(), m, cs, -1);
}

VynUString::VynUString(unsigned short u) : VynUString(u, 1) {}

VynUString::VynUString(unsigned short u, unsigned long m) : VynUString() {
    if (u == 0 || m == 0)
        return;
    makeRoom(m);
    std::fill_n(m_oRep.m_pText, m, u);
    endTextAt(m);
}

VynUString::VynUString(int i) : VynUString() {
    char digits[11];
    char* const end = std::to_chars(digits, digits + sizeof digits, i).ptr;
    std::copy(digits, end, m_aInline);
    endTextAt(static_cast<unsigned long>(end - digits));
}

VynUString::VynUString(char const* s, VynCharSet cs) : VynUString(s, npos, cs) {}

VynUString::VynUString(char const* s, unsigned long len, VynCharSet cs) : VynUString() {
    if (s != nullptr)
        convert(s, len, cs, -1); // deliberate: `len` bounds the count only, the count bounds the conversion
}

VynUString::VynUString(unsigned short const* s) : VynUString() {
    if (s == nullptr)
        return;
    // The length is a signed 32-bit value, deliberately: 2^31 units and more are refused as too large for any array.
    long const units = static_cast<int>(VynCharSetWStrlen(s));
    fill(s, static_cast<unsigned long>(units));
}

VynUString::VynUString(unsigned short const* s, unsigned long n) : VynUString() {
    if (s == nullptr || n == 0)
        return;
    unsigned long const units = vyn::unitLength(s, n);
    AssureSpace(n); // deliberate: all of `n`, even where the text is shorter
    fill(s, units);
}

VynUString::VynUString(unsigned short const* f, unsigned short const* l) : VynUString() {
    if (f < l)
        fill(f, static_cast<unsigned long>(l - f));
}

VynUString::VynUString(std::u16string_view s) : VynUString(s.data(), s.data() + s.size()) {}

VynUString::VynUString(VynPascalString const& p, VynCharSet cs) : VynUString(&p, cs) {}

VynUString::VynUString(VynPascalString const* p, VynCharSet cs) : VynUString() {
    if (p != nullptr && p->length != 0)
        convertUnterminated(p->text, p->length, cs, p->length);
}

VynUString::VynUString(VynBSTR const& b) : VynUString(&b) {}

VynUString::VynUString(VynBSTR const* b) : VynUString() {
    if (b != nullptr)
        fill(b->text, b->length);
}

VynUString::~VynUString() {
    releaseText();
    freeSecText();
}

VynUString& VynUString::assign(VynUString const& o) {
    if (&o == this)
        return *this;
    freeSecText();
    initForAlloc(); // deliberate: a heap array is let go of, not released
    fill(o.data(), o.length());
    return *this;
}

VynUString& VynUString::swap(VynUString& o) {
    if (&o == this)
        return *this;
    VynUString copy(o);
    o = VynUString(*this); // as `assign` would leave it, but releasing what it held
    return *this = std::move(copy);
}

VynUString& VynUString::erase() {
    if (m_oRep.m_ulLength != 0)
        endTextAt(0);
    freeSecText();
    return *this;
}

VynUString& VynUString::operator=(VynUString&& o) noexcept {
    if (&o == this)
        return *this;
    releaseText();
    freeSecText();
    takeOver(o);
    return *this;
}

VynUString& VynUString::operator=(VynPascalString const* p) {
    if (p == nullptr || p->length == 0)
        return erase();
    convertUnterminated(p->text, p->length, VYNCS_OS_DEFAULT, p->length);
    freeSecText();
    return *this;
}

VynUString& VynUString::operator=(VynBSTR const& b) {
    fill(b.text, b.length);
    freeSecText();
    return *this;
}

VynUString& VynUString::operator=(unsigned short const* s) {
    unsigned long const units = VynCharSetWStrlen(s);
    if (units == 0)
        return erase();
    fill(s, units);
    freeSecText();
    return *this;
}

VynUString& VynUString::operator=(char const* s) {
    if (s == nullptr)
        return erase();
    convert(s, npos, VYNCS_OS_DEFAULT, -1);
    freeSecText();
    return *this;
}

VynUString& VynUString::operator=(std::u16string_view s) {
    if (s.empty())
        return erase();
    fill(vyn::unitPointer(s.data()), s.size());
    freeSecText();
    return *this;
}

VynUString& VynUString::operator=(unsigned short u) {
    if (u == 0)
        return erase();
    fill(&u, 1);
    freeSecText();
    return *this;
}

VynUString& VynUString::operator=(char c) {
    if (c == 0)
        return erase();
    convertUnterminated(&c, 1, VYNCS_OS_DEFAULT, -1); // deliberate: a cached byte text survives
    return *this;
}
