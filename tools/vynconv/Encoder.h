#pragma once

#include <vynulib/VynCharSetConverter.h>

#include <cstddef>
#include <vector>

namespace vynconv {

/// Encodes text into one character set.
class Encoder {
public:
    Encoder(VynCharSet to, ILLCHAR_OPTYPE onError);

    /// Encodes `length` units, zero units included, in place of what `bytes` gave before. Returns false if something
    /// could not be converted: it was replaced or escaped, or with `ILLCHAR_STOP` the result is of no use.
    /// `text[length]` is overwritten for a while and must be there.
    bool encode(unsigned short* text, std::size_t length);

    /// What `encode` made. Valid until the next call of it.
    unsigned char const* bytes() const { return m_bytes.data(); }
    std::size_t size() const { return m_size; }

    /// Whether the set has the character at `text`, of 1 or 2 units.
    bool holds(unsigned short const* text, std::size_t units);

private:
    bool convertible(unsigned short const* text, std::size_t units) const;
    std::size_t findBreak(unsigned short const* text, std::size_t begin, std::size_t length) const;
    bool encodeRun(unsigned short const* text, std::size_t length);
    void encodeLoneSurrogate(unsigned short unit);
    void appendZero();
    void reserve(std::size_t bytes);

    enum Verdict : unsigned char { unknown, held, notHeld };

    VynCharSetConverter& m_converter;
    ILLCHAR_OPTYPE m_onError;
    bool m_holdsLoneSurrogates;
    std::vector<unsigned char> m_bytes;
    std::size_t m_size = 0;
    std::vector<Verdict> m_verdicts; // per unit, made when first asked for
};

} // namespace vynconv
