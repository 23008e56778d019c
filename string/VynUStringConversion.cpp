#include <vynulib/VynUString.h>

#include "base/Surrogates.h"
#include "charset/ServedSets.h"

#include <vynulib/VynCharSetConverter.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace {

constexpr unsigned long bytesPerCodePoint = 4; // in VYNCS_UTF32
constexpr unsigned long widestTerminator = 4;

/// Room for `count` bytes and more than a terminator, not initialised.
std::unique_ptr<char[]> newBytes(unsigned long count) {
    constexpr unsigned long spare = 8;
    if (count > VynUString::npos - spare)
        throw std::bad_array_new_length();
    return std::unique_ptr<char[]>(new char[count + spare]);
}

/// The bytes of a short text, without counting them first. Null where the text is long or ends with half a pair, which
/// converters count as nothing but convert, and where somebody else's converter has its own idea of a count.
std::unique_ptr<char[]> renderAtOnce(VynUString const& text, VynCharSet cs, unsigned long& length) {
    constexpr unsigned long mostBytes = 12288;
    vyn::ServedSet const* const set = vyn::setBehind(cs);
    if (!set || text.length() > mostBytes / set->operations->elementSize / set->operations->maxElementsPerUnit)
        return nullptr;
    alignas(unsigned) char rendered[mostBytes + widestTerminator];
    auto const done = set->operations->encodePart(set->converter, text.data(), rendered, mostBytes, ILLCHAR_REPLACE);
    if (done.units != 0 && vyn::isHighSurrogate(text.data()[done.units - 1]))
        return nullptr;
    std::memset(rendered + done.bytes, 0, widestTerminator);
    auto bytes = newBytes(done.bytes);
    std::memcpy(bytes.get(), rendered, done.bytes + widestTerminator);
    length = done.bytes;
    return bytes;
}

} // namespace

unsigned long VynUString::length(VynCharSet cs) const {
    if (empty())
        return 0;
    return VynCharSetConverter::getConverter(cs)->getNumBytes(data(), length());
}

unsigned long VynUString::numChars() const {
    bool const cached = m_oRep.m_pSecText != nullptr && m_oRep.m_eSecCharSet == VYNCS_UTF32;
    return (cached ? m_oRep.m_ulSecLength : length(VYNCS_UTF32)) / bytesPerCodePoint;
}

char const* VynUString::c_str(VynCharSet cs) {
    if (empty())
        return "\0\0\0"; // with its own zero byte, a terminator in every set
    if (m_oRep.m_pSecText != nullptr && m_oRep.m_eSecCharSet == cs)
        return m_oRep.m_pSecText;

    freeSecText();
    std::unique_ptr<char[]> bytes = renderAtOnce(*this, cs, m_oRep.m_ulSecLength);
    if (!bytes) {
        VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
        unsigned long const room = converter.getNumBytes(data(), length());
        bytes = newBytes(room);
        m_oRep.m_ulSecLength = converter.fromUTF16(bytes.get(), data(), room, ILLCHAR_REPLACE, nullptr);
    }
    m_oRep.m_eSecCharSet = cs;
    m_oRep.m_pSecText = bytes.release();
    return m_oRep.m_pSecText;
}

unsigned long VynUString::copy(char* dst, unsigned long size, VynCharSet cs) const {
    if (dst == nullptr || size == 0 || empty())
        return 0;
    return VynCharSetConverter::getConverter(cs)->fromUTF16(dst, data(), size, ILLCHAR_REPLACE, nullptr);
}

unsigned long VynUString::copy(unsigned short* dst, unsigned long size) const {
    if (dst == nullptr || size == 0 || empty())
        return 0;
    unsigned long const units = std::min(length(), size);
    std::memmove(dst, data(), units * sizeof(unsigned short));
    return units;
}

unsigned long VynUString::copy(VynPascalString* dst, VynCharSet cs) const {
    if (dst == nullptr)
        return 0;
    char bytes[sizeof dst->text + widestTerminator];
    dst->length = static_cast<unsigned char>(copy(bytes, sizeof dst->text, cs));
    std::memcpy(dst->text, bytes, dst->length);
    return dst->length;
}

unsigned long VynUString::copy(VynBSTR* dst, unsigned long max) const {
    if (dst == nullptr)
        return 0;
    unsigned long const units = std::min(length() % 65536, max); // deliberate: cut to the length unit before the limit
    dst->length = static_cast<unsigned short>(units);
    std::memmove(dst->text, data(), units * sizeof(unsigned short));
    return units;
}

unsigned short& VynUString::at(unsigned long i) {
    if (i >= length())
        range_error();
    return m_oRep.m_pText[i];
}

unsigned short const& VynUString::at(unsigned long i) const {
    if (i >= length())
        range_error();
    return m_oRep.m_pText[i];
}

unsigned int& VynUString::at_utf32(unsigned long i) {
    if (empty())
        range_error(); // there is no byte text then
    c_str(VYNCS_UTF32);
    if (i >= m_oRep.m_ulSecLength / bytesPerCodePoint)
        range_error();
    return reinterpret_cast<unsigned int*>(m_oRep.m_pSecText)[i];
}
