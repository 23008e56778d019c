#pragma once

#include "base/UnitEscape.h"
#include "converters/kernels/Bulk.h"
#include "converters/loops/Text.h"

#include <concepts>
#include <cstdint>

// What a codec is: a small object with the tables of its set that knows the rule of one character each way. Its steps
// state facts; the loops alone know policies, the flag, room and limits, and write replacements and terminators.
//
// An element is what texts of the set are made of: a byte, or a 32-bit value.

namespace vyn {

constexpr unsigned replacementCharacter = 0xFFFD;
constexpr unsigned char replacementElement = '?';

/// A character on the way to UTF-16.
struct Decoded {
    unsigned value;    ///< Scalar value, where mapped.
    unsigned elements; ///< Of the source that it takes, also where it is replaced.
    unsigned units;    ///< That it becomes, also where it is replaced.
    bool mapped;
    bool limited = true;   ///< Whether the source limit counts after it.
    bool cutShort = false; ///< The text ends where it, or a longer one, could have gone on.
};

/// A character on the way from UTF-16.
struct Encoded {
    std::uint64_t code; ///< Its elements, where mapped: one, or bytes with the last one in the lowest eight bits.
    unsigned elements;  ///< How many they are.
    unsigned units;     ///< Of the source that it takes, also where it is replaced.
    bool mapped;
    bool cutShort = false; ///< Not mapped only because the text ends within it.
    bool endsText = false; ///< The text ends before it, whatever the policy.
};

/// What counting finds: so many elements of the source make so many units. No elements: the count ends.
struct Counted {
    unsigned elements;
    unsigned units;
};

/// What an escape takes along: units of the source, and room.
struct EscapeToll {
    unsigned units;
    unsigned room;
};

/// A character of the Basic Multilingual Plane; a surrogate is one too.
constexpr Decoded mappedUnit(unsigned value, unsigned elements) {
    return {value, elements, 1, true};
}
constexpr Decoded mappedScalar(unsigned value, unsigned elements) {
    return {value, elements, value > 0xFFFF ? 2U : 1U, true};
}
constexpr Decoded unmapped(unsigned elements, bool cutShort = false) {
    return {0, elements, 1, false, true, cutShort};
}
/// The same where the source limit does not count after it.
constexpr Decoded unmappedUnlimited(unsigned elements, bool cutShort = false) {
    return {0, elements, 1, false, false, cutShort};
}
/// What a table says of a code, 0 being none.
constexpr Decoded lookedUpUnit(unsigned value, unsigned elements) {
    return {value, elements, 1, value != 0};
}

constexpr Encoded mappedCode(std::uint64_t code, unsigned elements, unsigned units) {
    return {code, elements, units, true};
}
constexpr Encoded unmappedUnits(unsigned units, bool cutShort = false) {
    return {0, 0, units, false, cutShort};
}

/// The rule of one character to UTF-16. A text without tables (`!ready()`) converts to nothing.
template <class Codec>
concept Decodes = requires(Codec const& codec, Terminated<typename Codec::Element> terminated,
                           TerminatedLater<typename Codec::Element> later, Limited<typename Codec::Element> limited) {
    { codec.ready() } -> std::same_as<bool>;
    { codec.decodeOne(terminated) } -> std::same_as<Decoded>;
    { codec.decodeOne(later) } -> std::same_as<Decoded>;
    { codec.decodeOne(limited) } -> std::same_as<Decoded>;
    /// No step and no bulk form makes more units of the elements that it takes: the bound of what may be scanned ahead.
    requires std::same_as<decltype(Codec::maxUnitsPerElement), unsigned const>;
};

/// `decodeOne` without a branch on the length of the character, where the element after the first can be read whatever
/// it is.
template <class Codec>
concept DecodesAhead = requires(Codec const& codec, typename Codec::Element const* at) {
    { codec.decodeAhead(at) } -> std::same_as<Decoded>;
};

/// A bulk form: converts characters that lie whole in [src, end), as many as are regular. There is no terminator among
/// them, and room for `maxUnitsPerElement` units for each of them. By vectors, as far as they reach:
template <class Codec>
concept DecodesVectors = requires(Codec const& codec, typename Codec::Element const* src, unsigned short* dst) {
    { codec.decodeVectors(src, src, dst) } -> std::same_as<BulkDecoded<typename Codec::Element>>;
};
/// Without them, what they leave:
template <class Codec>
concept DecodesBlocks = requires(Codec const& codec, typename Codec::Element const* src, unsigned short* dst) {
    { codec.decodeBlocks(src, src, dst) } -> std::same_as<BulkDecoded<typename Codec::Element>>;
};

/// A pair that does not fit is replaced, not the end of the text.
template <class Codec>
concept ReplacesPairsOutOfRoom = Decodes<Codec> && requires {
    requires Codec::replacesPairsOutOfRoom;
};

/// Counts units by rules of its own; of other codecs `decodeOne` tells.
template <class Codec>
concept CountsUnits = requires(Codec const& codec, Limited<typename Codec::Element> text) {
    { codec.countOne(text) } -> std::same_as<Counted>;
};

/// Bulk forms of counting, for texts without a terminator: as many regular characters as come by the block.
template <class Codec>
concept CountsVectors = requires(Codec const& codec, typename Codec::Element const* src, unsigned short const* units) {
    { codec.countVectors(src, src) } -> std::same_as<BulkCounted<typename Codec::Element>>;
    { codec.countVectors(units, units) } -> std::same_as<BulkCounted<unsigned short>>;
};

/// A codec of texts with a length, where zeros are elements like others and a loss must be told from a character.
template <class Codec>
concept DecodesPieces = requires(Codec const& codec, Bounded<typename Codec::Element> bounded,
                                 Ample<typename Codec::Element> ample) {
    { codec.decodeOne(bounded) } -> std::same_as<Decoded>;
    { codec.decodeOne(ample) } -> std::same_as<Decoded>;
    requires std::same_as<decltype(Codec::maxUnitsPerElement), unsigned const>;
};

/// Knows elements that are characters, or losses, by themselves, whatever follows them.
template <class Codec>
concept HasLoneElements = requires(typename Codec::Element element) {
    { Codec::isLone(element) } -> std::same_as<bool>;
    { Codec::lostLone(element) } -> std::same_as<unsigned>; ///< 1 for a loss, 0 for a character, whose unit it is.
};

/// The rule of one character from UTF-16.
template <class Codec>
concept Encodes = requires(Codec const& codec, Terminated<unsigned short> terminated, Limited<unsigned short> limited) {
    { codec.ready() } -> std::same_as<bool>;
    { codec.encodeOne(terminated) } -> std::same_as<Encoded>;
    { codec.encodeOne(limited) } -> std::same_as<Encoded>;
    /// No step and no bulk form makes more elements of the units that it takes.
    requires std::same_as<decltype(Codec::maxElementsPerUnit), unsigned const>;
};

/// Bulk forms likewise, with room for `maxElementsPerUnit` elements for each unit and for a terminator.
template <class Codec>
concept EncodesVectors = requires(Codec const& codec, unsigned short const* src, typename Codec::Element* dst) {
    { codec.encodeVectors(src, src, dst) } -> std::same_as<BulkEncoded<typename Codec::Element>>;
};
template <class Codec>
concept EncodesBlocks = requires(Codec const& codec, unsigned short const* src, typename Codec::Element* dst) {
    { codec.encodeBlocks(src, src, dst) } -> std::same_as<BulkEncoded<typename Codec::Element>>;
};

/// A few regular characters at a time, as far as they follow each other, where single steps are taken otherwise.
template <class Codec>
concept EncodesGroups = requires(Codec const& codec, unsigned short const* src, typename Codec::Element* dst) {
    { codec.encodeGroups(src, src, dst) } -> std::same_as<BulkEncoded<typename Codec::Element>>;
};

/// The same for texts with a length. A surrogate without its other half is not mapped, unless the set writes each of them
/// by itself.
template <class Codec>
concept EncodesPieces = requires(Codec const& codec, Bounded<unsigned short> bounded) {
    { codec.encodeOne(bounded) } -> std::same_as<Encoded>;
    requires std::same_as<decltype(Codec::maxElementsPerUnit), unsigned const>;
};
template <class Codec>
concept EncodesSurrogates = EncodesPieces<Codec> && requires {
    requires Codec::encodesSurrogates;
};

/// Tells whether the printable characters of ASCII are their own elements, either way.
template <class Codec>
concept KeepsAscii = requires(Codec const& codec) {
    { codec.keepsAscii() } -> std::same_as<bool>;
};

/// Escapes that take other units and room than what they escape and what they write.
template <class Codec>
concept TakesEscapeToll = Encodes<Codec> && requires(Codec const& codec, Terminated<unsigned short> text) {
    { codec.escapeToll(text) } -> std::same_as<EscapeToll>;
};

} // namespace vyn
