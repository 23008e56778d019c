#pragma once

#include "converters/kernels/HalfSubset.h"

#include <vynulib/LookupTable.h>

namespace vyn {

/// The tables of a single-byte set in the form that vectors look them up in, 16 bytes at a time, 0 being none.
struct SingleByteRows {
    static constexpr unsigned count = 128; ///< Bytes that are not ASCII, and units of the home.

    void fill(unsigned short const (&unitOf)[256], LookupTable<unsigned char> const& reverse);

    unsigned char lowOfUnit[count] = {}; ///< Of the bytes from 80 on.
    unsigned char highOfUnit[count] = {};
    HalfSubset oddBytes;     ///< That are not their own units.
    HalfSubset oddUnits;     ///< That are not their own bytes.
    bool isLatin1 = false;   ///< All bytes are their own units, and the reverse.
    unsigned short home = 0; ///< The first of the 128 units, in a row, that most bytes of the set have.
    unsigned char byteOfHome[count] = {};
    unsigned char byteOf[0x10000] = {};
};

} // namespace vyn
