#pragma once

#include "tools/vynconv/Text.h"

#include <vynulib/VynCharSetConverter.h>

#include <string>

namespace vynconv {

/// Decodes a file in one character set, chunk by chunk, and finds what is lost on the way.
class Decoder {
public:
    explicit Decoder(VynCharSet from);

    /// How many of the first bytes end at a character for certain, whatever follows. The first `carried` bytes are
    /// those left over from the chunk before. 0 where more has to be read first, never so if `full` says that there is
    /// no room.
    std::size_t wholeCharacters(unsigned char const* bytes, std::size_t carried, std::size_t size, bool full) const;

    /// Appends the decoded `bytes` to `text`, and what was lost to its losses. A zero in the source is a zero unit.
    /// What is incomplete at the end is lost. The byte at `bytes[size]` is overwritten for a while and must be there.
    void decode(unsigned char* bytes, std::size_t size, Text& text) const;

private:
    struct Character {
        std::size_t bytes;
        std::size_t units;
        bool lost;
    };

    std::size_t findZero(unsigned char const* bytes, std::size_t size) const;
    bool decodePieces(unsigned char const* bytes, std::size_t size, Text& text) const;
    void findLosses(unsigned char const* bytes, std::size_t size, std::size_t firstUnit, Text& text) const;
    void findLossesByCharacter(unsigned char const* bytes, std::size_t size, std::size_t unit, Text& text) const;
    Character decodeAlone(unsigned char const* bytes, std::size_t size) const;
    Character characterAt(unsigned char const* bytes, std::size_t available) const;

    VynCharSetConverter& m_converter;
    VynCharSet m_from;
    std::size_t m_unitBytes;           // of the source
    std::size_t m_maxCharacterBytes;   // of sets that are neither UTF-8 nor wide
    std::string m_ownReplacementBytes; // what U+FFFD is in the set itself; empty where it has none
};

} // namespace vynconv
