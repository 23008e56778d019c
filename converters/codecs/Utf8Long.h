#pragma once

#include "base/Surrogates.h"
#include "converters/codecs/Utf8Sequence.h"
#include "converters/loops/Codec.h"

namespace vyn {

// UTF-8 in the form of RFC 2279, with sequences of up to six bytes: what UTF-32 is converted from and to directly.

struct LongSequenceForm {
    unsigned lead;     // bits that mark the lead byte
    unsigned leadMask; // bits of the lead byte that carry the value
    unsigned minimum;  // a smaller value is an overlong form
};

/// By the number of trailing bytes.
constexpr LongSequenceForm longSequenceForms[] = {{0x00, 0x7F, 0},        {0xC0, 0x1F, 0x80},
                                                  {0xE0, 0x0F, 0x800},    {0xF0, 0x07, 0x10000},
                                                  {0xF8, 0x03, 0x200000}, {0xFC, 0x01, 0x4000000}};
constexpr unsigned maxTrails = 5;
constexpr unsigned endOfLongSequences = 0x80000000;

/// Writes `value`, below `endOfLongSequences`; returns the bytes written.
inline unsigned writeLongSequence(unsigned char* dst, unsigned value) {
    unsigned trails = 0;
    while (trails < maxTrails && value >= longSequenceForms[trails + 1].minimum)
        ++trails;
    *dst = static_cast<unsigned char>(longSequenceForms[trails].lead | value >> 6 * trails);
    for (unsigned i = 1; i <= trails; ++i)
        dst[i] = static_cast<unsigned char>(0x80 | (value >> 6 * (trails - i) & 0x3F));
    return trails + 1;
}

/// Reads one sequence, which is malformed, hence U+FFFD, where it is overlong, a surrogate, U+FFFE or U+FFFF. Without all
/// its continuation bytes only the lead byte is taken.
inline Decoded readLongSequence(Terminated<unsigned char> text) {
    unsigned const lead = text[0];
    if (lead < 0x80)
        return mappedScalar(lead, 1);
    if (lead < 0xC0 || lead >= 0xFE)
        return unmapped(1);
    unsigned trails = maxTrails;
    while ((lead & ~longSequenceForms[trails].leadMask & 0xFF) != longSequenceForms[trails].lead)
        --trails;
    LongSequenceForm const& form = longSequenceForms[trails];
    unsigned value = lead & form.leadMask;
    for (unsigned i = 1; i <= trails; ++i) {
        if (!isContinuation(text[i]))
            return unmapped(1);
        value = value << 6 | (text[i] & 0x3FU);
    }
    bool const rejected = value < form.minimum || isSurrogate(value) || value == 0xFFFE || value == 0xFFFF;
    return rejected ? unmapped(trails + 1) : mappedScalar(value, trails + 1);
}

} // namespace vyn
