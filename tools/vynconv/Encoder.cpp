#include "tools/vynconv/Encoder.h"

#include "base/Surrogates.h"
#include "base/UnitEscape.h"

#include <algorithm>
#include <cstring>

namespace vynconv {
namespace {

constexpr std::size_t maxBytesPerUnit = 6; // of an escape; characters take less
constexpr std::size_t maxTerminator = 4;
constexpr unsigned short loneSurrogate[] = {0xD800};

bool mayBreak(unsigned short unit) {
    return unit == 0 || vyn::isHighSurrogate(unit);
}

// Whole blocks without a zero and a high surrogate, for the compiler to vectorise.
std::size_t skipPlainBlocks(unsigned short const* text, std::size_t begin, std::size_t length) {
    constexpr std::size_t block = 64;
    for (; length - begin >= block; begin += block) {
        unsigned short found = 0;
        for (std::size_t i = begin; i < begin + block; ++i)
            found = static_cast<unsigned short>(found | mayBreak(text[i]));
        if (found)
            break;
    }
    return begin;
}

} // namespace

Encoder::Encoder(VynCharSet to, ILLCHAR_OPTYPE onError)
    : m_converter(*VynCharSetConverter::getConverter(to)), m_onError(onError),
      m_holdsLoneSurrogates(convertible(loneSurrogate, 1)) {}

bool Encoder::encode(unsigned short* text, std::size_t length) {
    m_size = 0;
    bool clean = true;
    for (std::size_t begin = 0; begin < length;) {
        std::size_t const end = findBreak(text, begin, length);
        unsigned short const unit = text[end];
        text[end] = 0;
        clean = encodeRun(text + begin, end - begin) && clean;
        text[end] = unit;
        if (end < length && unit == 0) {
            appendZero();
        } else if (end < length) {
            encodeLoneSurrogate(unit);
            clean = false;
        }
        begin = end + 1;
    }
    return clean;
}

// The first zero or lone high surrogate. Converters end at the one and differ in what they do with the other: one drops
// what stands behind it, one ends there without a word.
std::size_t Encoder::findBreak(unsigned short const* text, std::size_t begin, std::size_t length) const {
    for (std::size_t i = skipPlainBlocks(text, begin, length); i < length; ++i) {
        if (text[i] == 0)
            return i;
        if (!vyn::isHighSurrogate(text[i]))
            continue;
        if (i + 1 < length && vyn::isLowSurrogate(text[i + 1]))
            ++i;
        else if (!m_holdsLoneSurrogates)
            return i;
    }
    return length;
}

bool Encoder::encodeRun(unsigned short const* text, std::size_t length) {
    if (length == 0)
        return true;
    std::size_t const room = length * maxBytesPerUnit;
    reserve(room);
    bool illegal = false;
    m_size += m_converter.fromUTF16(m_bytes.data() + m_size, text, room, m_onError, &illegal);
    return !illegal;
}

void Encoder::encodeLoneSurrogate(unsigned short unit) {
    unsigned char ascii[vyn::unitEscapeLength] = {'?'};
    if (m_onError == ILLCHAR_ESCAPE)
        vyn::writeUnitEscape(ascii, unit);
    unsigned short text[vyn::unitEscapeLength + 1] = {};
    std::copy(std::begin(ascii), std::end(ascii), text);
    encodeRun(text, vyn::unitEscapeLength);
}

void Encoder::appendZero() {
    reserve(0);
    std::size_t const zeroBytes = m_converter.getMinUnitSize();
    std::memset(m_bytes.data() + m_size, 0, zeroBytes);
    m_size += zeroBytes;
}

void Encoder::reserve(std::size_t bytes) {
    if (m_bytes.size() < m_size + bytes + maxTerminator)
        m_bytes.resize(2 * m_bytes.size() + bytes + maxTerminator);
}

bool Encoder::holds(unsigned short const* text, std::size_t units) {
    if (units > 1)
        return convertible(text, units);
    if (m_verdicts.empty())
        m_verdicts.resize(vyn::maxBmpValue + 1, unknown);
    Verdict& verdict = m_verdicts[*text];
    if (verdict == unknown)
        verdict = *text == 0 || convertible(text, 1) ? held : notHeld;
    return verdict == held;
}

bool Encoder::convertible(unsigned short const* text, std::size_t units) const {
    unsigned short source[3] = {};
    unsigned char bytes[2 * maxBytesPerUnit + maxTerminator];
    std::copy_n(text, units, source);
    bool illegal = false;
    return m_converter.fromUTF16(bytes, source, 2 * maxBytesPerUnit, ILLCHAR_STOP, &illegal) != 0 && !illegal;
}

} // namespace vynconv
