#pragma once

#include "converters/kernels/Bulk.h"
#include "converters/kernels/CaseMap.h"

namespace vyn {

struct DoubleByteRows;
struct SingleByteRows;

/// What is a sequence: by its form only, or by Unicode's definition, without overlong forms, surrogates and values above
/// U+10FFFF.
enum class Utf8Rules { lenient, strict };

/// Of units in memory.
enum class ByteOrder { machine, other };

/// The first two units of a pattern and its last, and how far the last is from the first: 1 or more.
struct PatternEnds {
    unsigned short first, second, last;
    unsigned long distance;
};

/// The bulk forms that use the vectors of one instruction set. Each converts characters from the start of [src, end), as
/// long as they are regular and come by the block; what it leaves, up to everything, is for the forms that need no vectors.
/// There is no terminator in it, and room for all that it becomes and a terminator. Nothing is written after what is
/// converted, and nothing is read but what lies in the same page, and not even that where reads are checked.
struct Kernels {
    using Decode = KernelDecoded(unsigned char const* src, unsigned char const* end, unsigned short* dst);
    using Encode = BulkEncoded<unsigned char>(unsigned short const* src, unsigned short const* end, unsigned char* dst);

    template <class Rows>
    using DecodeBy = KernelDecoded(Rows const& rows, unsigned char const* src, unsigned char const* end,
                                   unsigned short* dst);
    template <class Rows>
    using EncodeBy = BulkEncoded<unsigned char>(Rows const& rows, unsigned short const* src, unsigned short const* end,
                                                unsigned char* dst);

    char const* level;
    Decode* decodeLenientUtf8;
    Decode* decodeStrictUtf8;
    Encode* encodeUtf8; ///< Takes no surrogate without its other half.

    /// Of `count` units how many were moved, as far as no surrogate is without its other half: as they are, from the other
    /// byte order, and to it.
    using MoveUnits = unsigned long(unsigned char const* src, unsigned long count, unsigned char* dst);
    MoveUnits* moveUtf16;
    MoveUnits* moveUtf16FromOther;
    MoveUnits* moveUtf16ToOther;

    /// The units that the first kind of text becomes, and the bytes of the second.
    BulkCounted<unsigned char> (*countLenientUtf8)(unsigned char const* src, unsigned char const* end);
    BulkCounted<unsigned short> (*countUtf8)(unsigned short const* src, unsigned short const* end);

    DecodeBy<SingleByteRows>* decodeSingleByte;
    EncodeBy<SingleByteRows>* encodeSingleByte;
    DecodeBy<DoubleByteRows>* decodeDoubleByte;
    EncodeBy<DoubleByteRows>* encodeDoubleByte;

    /// The elements before the first zero element, at most `most`, which is above 0; units at even addresses. Where reads are
    /// checked they are not to be called.
    unsigned long (*byteLength)(unsigned char const* text, unsigned long most);
    unsigned long (*unitLength)(unsigned short const* text, unsigned long most);

    // The following take texts of any length, zero units included, and leave nothing.

    /// The first or last of `count` positions at which a unit stands, or both ends of a pattern, or `count`. The text goes
    /// on behind the positions for the distance of the ends.
    using FindUnit = unsigned long(unsigned short const* text, unsigned long count, unsigned short unit);
    using FindEnds = unsigned long(unsigned short const* text, unsigned long count, PatternEnds ends);
    FindUnit* firstUnit;
    FindUnit* lastUnit;
    FindEnds* firstEnds;
    FindEnds* lastEnds;

    /// How many of `count` units of two texts are the same before a difference or a zero unit, or `count`.
    unsigned long (*sameUnits)(unsigned short const* a, unsigned short const* b, unsigned long count);

    /// As `map` makes them. Without a map, other units than ASCII letters that differ are different.
    unsigned long (*sameUnitsNoCase)(unsigned short const* a, unsigned short const* b, unsigned long count,
                                     CaseMap const* map);

    /// Change units in place and return whether any is another now: letters of ASCII alone, and as `map` says.
    bool (*changeAsciiCase)(unsigned short* text, unsigned long count, AsciiLetters changed);
    bool (*changeCase)(unsigned short* text, unsigned long count, CaseMap const& map);
};

/// Those of the best instruction set that this machine has, and of none until the library is loaded. The variable
/// VYNULIB_LEVEL in the environment names a lower one.
extern Kernels kernels;

/// Below this many elements the call of a kernel costs more than it saves.
constexpr unsigned shortestForKernel = 24;

extern Kernels const sse4Kernels;
extern Kernels const avx2Kernels;
extern Kernels const neonKernels;

} // namespace vyn
