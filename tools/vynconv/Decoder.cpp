#include "tools/vynconv/Decoder.h"

#include "base/Surrogates.h"
#include "tools/vynconv/Utf8Losses.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace vynconv {
namespace {

constexpr std::size_t longestCharacter = 6; // "U+XXXX" of escaped UTF-16

template <class Unit>
Unit load(unsigned char const* bytes) {
    Unit unit;
    std::memcpy(&unit, bytes, sizeof unit);
    return unit;
}

template <class Unit>
std::size_t findZeroUnit(unsigned char const* bytes, std::size_t size) {
    std::size_t i = 0;
    while (i < size && load<Unit>(bytes + i) != 0)
        i += sizeof(Unit);
    return i;
}

void findUtf32Losses(unsigned char const* bytes, std::size_t size, std::size_t unit, std::vector<Loss>& losses) {
    for (std::size_t i = 0; i < size; i += 4) {
        auto const value = load<std::uint32_t>(bytes + i);
        std::size_t const units = value > vyn::maxBmpValue ? 2 : 1;
        if (value > vyn::maxScalarValue)
            losses.push_back({unit, units});
        unit += units;
    }
}

// Holds back a sequence that more bytes may complete.
std::size_t wholeUtf8(unsigned char const* bytes, std::size_t size) {
    for (std::size_t back = 1; back <= std::min<std::size_t>(size, 3); ++back) {
        unsigned const length = utf8SequenceLength(bytes[size - back]);
        if (length != 0)
            return length > back ? size - back : size;
    }
    return size;
}

std::string encodedReplacement(VynCharSetConverter& converter) {
    unsigned short const text[] = {replacementCharacter, 0};
    char bytes[16];
    bool illegal = false;
    unsigned long const size = converter.fromUTF16(bytes, text, 8, ILLCHAR_STOP, &illegal);
    return illegal ? std::string() : std::string(bytes, size);
}

} // namespace

Decoder::Decoder(VynCharSet from)
    : m_converter(*VynCharSetConverter::getConverter(from)), m_from(from), m_unitBytes(m_converter.getMinUnitSize()),
      m_maxCharacterBytes(std::min<std::size_t>(m_converter.getMaxUnitSize(), longestCharacter)),
      m_ownReplacementBytes(encodedReplacement(m_converter)) {}

std::size_t Decoder::wholeCharacters(unsigned char const* bytes, std::size_t carried, std::size_t size,
                                     bool full) const {
    if (m_unitBytes > 1 || m_maxCharacterBytes == 1)
        return size - size % m_unitBytes;
    if (m_from == VYNCS_UTF8)
        return wholeUtf8(bytes, size);
    // No set begins a character with a blank, a control or a zero, nor goes on behind one. None is in what was carried.
    for (std::size_t end = size; end > carried; --end)
        if (bytes[end - 1] <= ' ')
            return end;
    if (!full)
        return 0;
    std::size_t end = 0;
    while (size - end >= m_maxCharacterBytes)
        end += characterAt(bytes + end, size - end).bytes;
    return end;
}

void Decoder::decode(unsigned char* bytes, std::size_t size, Text& text) const {
    std::size_t const firstUnit = text.length;
    std::size_t const wholeBytes = size - size % m_unitBytes;
    // No set decodes a byte to more than one unit; the rest is for a last U+FFFD and the terminator.
    text.units.resize(std::max(text.units.size(), firstUnit + size + 3));

    unsigned char const behind = bytes[size];
    bytes[size] = 0;
    bool const flagged = decodePieces(bytes, wholeBytes, text);
    bytes[size] = behind;

    if (m_from == VYNCS_UTF32)
        findUtf32Losses(bytes, wholeBytes, firstUnit, text.losses);
    else if (flagged)
        findLosses(bytes, wholeBytes, firstUnit, text);
    if (wholeBytes < size) {
        text.losses.push_back({text.length, 1});
        text.append(replacementCharacter);
    }
}

std::size_t Decoder::findZero(unsigned char const* bytes, std::size_t size) const {
    if (m_unitBytes == 4)
        return findZeroUnit<std::uint32_t>(bytes, size);
    if (m_unitBytes == 2)
        return findZeroUnit<std::uint16_t>(bytes, size);
    void const* const zero = std::memchr(bytes, 0, size);
    return zero ? static_cast<std::size_t>(static_cast<unsigned char const*>(zero) - bytes) : size;
}

// Each piece ends at a zero, where the converter ends as well. Returns the converter's flag.
bool Decoder::decodePieces(unsigned char const* bytes, std::size_t size, Text& text) const {
    bool flagged = false;
    for (std::size_t begin = 0; begin < size;) {
        std::size_t const pieceBytes = findZero(bytes + begin, size - begin);
        if (pieceBytes != 0) {
            // The wide sets are not terminated at the end of the chunk, but their limit counts units in both.
            int const limit = m_unitBytes > 1 ? static_cast<int>(pieceBytes / m_unitBytes) : -1;
            bool illegal = false;
            text.length += m_converter.toUTF16(text.units.data() + text.length, bytes + begin, pieceBytes + 1,
                                               ILLCHAR_REPLACE, &illegal, limit);
            flagged |= illegal;
        }
        begin += pieceBytes;
        if (begin < size) {
            text.append(0);
            begin += m_unitBytes;
        }
    }
    return flagged;
}

void Decoder::findLosses(unsigned char const* bytes, std::size_t size, std::size_t firstUnit, Text& text) const {
    if (m_from == VYNCS_UTF8) {
        findUtf8Losses(bytes, size, firstUnit, text.losses);
        return;
    }
    if (!m_ownReplacementBytes.empty() &&
        ::memmem(bytes, size, m_ownReplacementBytes.data(), m_ownReplacementBytes.size()) != nullptr) {
        findLossesByCharacter(bytes, size, firstUnit, text);
        return;
    }
    for (std::size_t unit = firstUnit; unit < text.length; ++unit)
        if (text.units[unit] == replacementCharacter)
            text.losses.push_back({unit, 1});
}

// Tells a U+FFFD that stands in the source from one that the converter put in.
void Decoder::findLossesByCharacter(unsigned char const* bytes, std::size_t size, std::size_t unit, Text& text) const {
    for (std::size_t i = 0; i < size;) {
        Character const character = characterAt(bytes + i, size - i);
        if (character.lost)
            text.losses.push_back({unit, character.units});
        unit += character.units;
        i += character.bytes;
    }
}

// `size` bytes as if they were all of the text. `bytes` of the result is 0 if that is more than one character.
Decoder::Character Decoder::decodeAlone(unsigned char const* bytes, std::size_t size) const {
    unsigned char source[longestCharacter + 1] = {};
    unsigned short units[longestCharacter + 2];
    std::memcpy(source, bytes, size);
    bool lost = false;
    std::size_t const count = m_converter.toUTF16(units, source, longestCharacter + 1, ILLCHAR_REPLACE, &lost, -1);
    bool const single = count == 1 || (count == 2 && vyn::isHighSurrogate(units[0]));
    return {single ? size : 0, count, lost};
}

// The converters don't say what they read. But the most bytes that, taken alone, are one character are the character:
// it reads no further than its own bytes, and no fewer ever give one unit for all of them.
Decoder::Character Decoder::characterAt(unsigned char const* bytes, std::size_t available) const {
    std::size_t size = findZero(bytes, std::min(available, m_maxCharacterBytes));
    if (size == 0)
        return {1, 1, false};
    Character character = decodeAlone(bytes, size);
    while (character.bytes == 0)
        character = decodeAlone(bytes, --size);
    return character;
}

} // namespace vynconv
