#include <vynulib/VynUString.h>

#include <vynulib/VynCharSetConverter.h>

#include "base/PaddedBytes.h"
#include "charset/ServedSets.h"
#include "charset/UnitPieces.h"
#include "converters/kernels/TextScan.h"
#include "string/Draft.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace {

/// Gives `write(units, count)` the units of a terminated text that its converter counts as it converts it, if they are few.
/// False otherwise: where a character is irregular, or a byte may become two units, the count has rules of its own.
template <class Write>
bool decodeAtOnce(char const* text, VynCharSet cs, Write write) {
    vyn::ServedSet const* const set = vyn::setBehind(cs);
    if (!set || set->operations->maxUnitsPerElement != 1 || set->operations->elementSize != 1)
        return false;
    vyn::UnitPieces pieces(*set, text, VynUString::npos);
    pieces.next();
    if (pieces.sawIllegal() || !pieces.isLast())
        return false;
    write(pieces.units(), pieces.count());
    return true;
}

} // namespace

void VynUString::range_error() {
    throw std::out_of_range("invalid string index given");
}

void VynUString::length_error() {
    throw std::length_error("exceed maximum string length");
}

VynUString::Representation* VynUString::SetupSpace() {
    Draft::setUp(*this);
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
    if (n > capacity())
        Draft(*this, n).keepBesideBytes(0);
}

void VynUString::freeSecText() {
    delete[] m_oRep.m_pSecText;
    m_oRep.m_pSecText = nullptr;
}

/// Takes as many units as the converter counts in `byteCount` bytes; none erase the string.
void VynUString::convert(VynCharSetConverter& converter, void const* bytes, unsigned long byteCount, int maxSrc) {
    unsigned long const units = converter.getNumUnits(bytes, byteCount);
    if (units == 0) {
        erase();
        return;
    }
    Draft draft(*this, units);
    draft.keep(converter.toUTF16(draft.units(), bytes, units, ILLCHAR_REPLACE, nullptr, maxSrc));
}

void VynUString::convertUnterminated(char const* bytes, unsigned long byteCount, VynCharSet cs, int maxSrc) {
    vyn::PaddedBytes padded(byteCount);
    std::memcpy(padded.data(), bytes, byteCount);
    convert(*VynCharSetConverter::getConverter(cs), padded.data(), byteCount, maxSrc);
}

VynUString::VynUString() noexcept {
    initForAlloc();
}

VynUString::VynUString(VynUString const& o) : VynUString() {
    Draft::write(*this, o.data(), o.length());
}

VynUString::VynUString(VynUString&& o) noexcept {
    Draft::move(*this, o);
}

VynUString::VynUString(VynUString const& o, unsigned long p, unsigned long n) : VynUString() {
    unsigned long const from = std::min(p, o.length());
    Draft::write(*this, o.data() + from, std::min(o.length() - from, n));
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
    convert(*VynCharSetConverter::getConverter(cs), bytes.data(), m, -1);
}

VynUString::VynUString(unsigned short u) : VynUString(u, 1) {}

VynUString::VynUString(unsigned short u, unsigned long m) : VynUString() {
    if (u == 0 || m == 0)
        return;
    Draft draft(*this, m);
    std::fill_n(draft.units(), m, u);
    draft.keep(m);
}

VynUString::VynUString(int i) : VynUString() {
    char digits[11];
    char* const end = std::to_chars(digits, digits + sizeof digits, i).ptr;
    Draft draft(*this, sizeof digits);
    std::copy(digits, end, draft.units());
    draft.keep(static_cast<unsigned long>(end - digits));
}

VynUString::VynUString(char const* s, VynCharSet cs) : VynUString(s, npos, cs) {}

VynUString::VynUString(char const* s, unsigned long len, VynCharSet cs) : VynUString() {
    if (s == nullptr)
        return;
    auto const write = [this](unsigned short const* units, unsigned long count) { Draft::write(*this, units, count); };
    if (len == npos && decodeAtOnce(s, cs, write))
        return;
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
    // A converter's count trusts what a lead byte promises, past the terminator too, which memory may end with. Where
    // terminators are wider than a byte, there are no lead bytes.
    if (len != npos && converter.getNullCharSize() == 1)
        len = vyn::lengthWithin(reinterpret_cast<unsigned char const*>(s), len);
    convert(converter, s, len, -1); // deliberate: `len` bounds the count only, the count bounds the conversion
}

VynUString::VynUString(unsigned short const* s) : VynUString() {
    if (s == nullptr)
        return;
    // The length is a signed 32-bit value, deliberately: 2^31 units and more are refused as too large for any array.
    long const units = static_cast<int>(VynCharSetWStrlen(s));
    Draft::write(*this, s, static_cast<unsigned long>(units));
}

VynUString::VynUString(unsigned short const* s, unsigned long n) : VynUString() {
    if (s == nullptr || n == 0)
        return;
    unsigned long const units = vyn::lengthWithin(s, n);
    Draft draft(*this, n); // deliberate: room for all of `n`, even where the text is shorter
    std::memcpy(draft.units(), s, units * sizeof(unsigned short));
    draft.keep(units);
}

VynUString::VynUString(unsigned short const* f, unsigned short const* l) : VynUString() {
    if (f < l)
        Draft::write(*this, f, static_cast<unsigned long>(l - f));
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
        Draft::write(*this, b->text, b->length);
}

VynUString::~VynUString() {
    Draft::releaseArray(*this);
    freeSecText();
}

VynUString& VynUString::assign(VynUString const& o) {
    if (&o == this)
        return *this;
    VynUString copy(o);
    freeSecText();
    Draft::move(*this, copy); // deliberate: a heap array is let go of, not released
    return *this;
}

VynUString& VynUString::swap(VynUString& o) {
    if (&o == this)
        return *this;
    VynUString ours(*this),
        theirs(o); // copies, deliberately: without cached byte text, and in a capacity that just fits
    o = std::move(ours);
    return *this = std::move(theirs);
}

VynUString& VynUString::erase() {
    Draft(*this, 0).keep(0);
    return *this;
}

VynUString& VynUString::operator=(VynUString const& o) {
    if (&o != this)
        Draft::write(*this, o.data(), o.length());
    return *this;
}

VynUString& VynUString::operator=(VynUString&& o) noexcept {
    if (&o == this)
        return *this;
    Draft::releaseArray(*this);
    freeSecText();
    Draft::move(*this, o);
    return *this;
}

VynUString& VynUString::operator=(VynPascalString const* p) {
    if (p == nullptr || p->length == 0)
        return erase();
    convertUnterminated(p->text, p->length, VYNCS_OS_DEFAULT, p->length);
    return *this;
}

VynUString& VynUString::operator=(VynBSTR const& b) {
    Draft::write(*this, b.text, b.length);
    return *this;
}

VynUString& VynUString::operator=(unsigned short const* s) {
    if (s == nullptr)
        return erase();
    Draft::write(*this, s, VynCharSetWStrlen(s));
    return *this;
}

VynUString& VynUString::operator=(char const* s) {
    if (s == nullptr)
        return erase();
    convert(*VynCharSetConverter::getConverter(VYNCS_OS_DEFAULT), s, npos, -1);
    return *this;
}

VynUString& VynUString::operator=(std::u16string_view s) {
    if (s.empty())
        return erase();
    Draft::write(*this, vyn::unitPointer(s.data()), s.size());
    return *this;
}

VynUString& VynUString::operator=(unsigned short u) {
    Draft::write(*this, &u, u == 0 ? 0 : 1);
    return *this;
}

VynUString& VynUString::operator=(char c) {
    VynUString const text(c);
    if (text.empty())
        return erase();
    Draft draft(*this, text.length());
    std::memcpy(draft.units(), text.data(), text.length() * sizeof(unsigned short));
    draft.keepBesideBytes(text.length()); // deliberate: a cached byte text survives
    return *this;
}
