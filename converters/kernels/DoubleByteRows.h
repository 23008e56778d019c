#pragma once

#include "converters/kernels/HalfSubset.h"
#include "converters/kernels/Kernels.h"
#include "converters/loops/Codec.h"

#include <algorithm>
#include <iterator>

namespace vyn {

/// What a set makes of codes of one byte and of two, in flat tables that kernels look them up in. 0 is none, or what only
/// the codec knows.
struct DoubleByteRows {
    /// From a codec that takes nothing for a character what its set's converter or the strict functions do not.
    template <class Codec>
    explicit DoubleByteRows(Codec const& codec) {
        for (unsigned first = 1; first < 256; ++first)
            fillRow(codec, first);
        for (unsigned unit = 1; unit < std::size(codeOf); ++unit)
            codeOf[unit] = codeBytes(codec, static_cast<unsigned short>(unit));
        for (unsigned character = 1; character < asciiEnd; ++character) {
            if (unitOf[character << 8] != character)
                oddBytes.insert(character);
            if (codeOf[character] != character)
                oddUnits.insert(character);
        }
    }

    static constexpr unsigned asciiEnd = 0x80;

    HalfSubset leads;    ///< Bytes that begin two, all of them above ASCII.
    HalfSubset oddBytes; ///< Of ASCII, that are not their own units.
    HalfSubset oddUnits; ///< Of ASCII, that are not their own bytes.
    bool isLead[256] = {};
    bool areLeads = true; ///< All bytes above ASCII are, or are no characters: so they can be taken for leads.

    unsigned short unitOf[0x10000] = {}; ///< By first and second byte; one byte's unit stands with every second one.
    unsigned short codeOf[0x10000] = {}; ///< Of a unit: its bytes, the first in the lower half.

private:
    template <class Codec>
    void fillRow(Codec const& codec, unsigned first) {
        unsigned short* const row = &unitOf[first << 8];
        for (unsigned second = 0; second < 256; ++second) {
            unsigned char const bytes[] = {static_cast<unsigned char>(first), static_cast<unsigned char>(second)};
            Decoded const found = codec.decodeOne(Bounded{bytes, std::size(bytes)});
            isLead[first] |= found.elements == 2;
            if (found.mapped && found.units == 1)
                row[second] = static_cast<unsigned short>(found.value);
        }
        if (isLead[first] && first >= asciiEnd)
            leads.insert(first);
        else if (isLead[first]) // no kernel can tell where characters begin: it is given none
            std::fill_n(row, 256, static_cast<unsigned short>(0));
        else if (first >= asciiEnd)
            areLeads &= row[0] == 0;
    }

    template <class Codec>
    static unsigned short codeBytes(Codec const& codec, unsigned short unit) {
        Encoded const found = codec.encodeOne(Bounded{&unit, 1});
        if (!found.mapped || found.elements > 2)
            return 0;
        bool const isPair = found.elements == 2;
        return static_cast<unsigned short>(isPair ? found.code >> 8 | (found.code & 0xFF) << 8 : found.code);
    }
};

/// The tables of a codec, and its bulk forms where these have `rows`.
template <class Tables>
struct DoubleByteVectors {
    Tables const* tables;

    BulkDecoded<unsigned char> decodeVectors(unsigned char const* src, unsigned char const* end,
                                             unsigned short* dst) const {
        if (!tables->rows)
            return {src, dst};
        return kernels.decodeDoubleByte(*tables->rows, src, end, dst).from(src, dst);
    }
    BulkEncoded<unsigned char> encodeVectors(unsigned short const* src, unsigned short const* end,
                                             unsigned char* dst) const {
        if (!tables->rows)
            return {src, dst};
        return kernels.encodeDoubleByte(*tables->rows, src, end, dst);
    }
};

} // namespace vyn
