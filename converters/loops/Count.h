#pragma once

#include "converters/kernels/Kernels.h"
#include "converters/loops/Codec.h"
#include "converters/loops/Run.h"

namespace vyn {

template <class Codec>
Counted countCharacter(Codec const& codec, Limited<typename Codec::Element> text) {
    if constexpr (CountsUnits<Codec>) {
        return codec.countOne(text);
    } else {
        Decoded const found = codec.decodeOne(text);
        return {found.elements, found.units};
    }
}

/// Adds up what `countOne(text)` finds, of which no elements end the count, and what vectors count in between.
template <class Codec, class Element, class CountOne>
unsigned long countText(Codec const& codec, Limited<Element> text, CountOne countOne) {
    [[maybe_unused]] Element const* end = text.at;
    if constexpr (CountsVectors<Codec>)
        end += lengthWithin(text.at, text.left);
    Turns turns;
    for (unsigned long count = 0;;) {
        long taken = 0;
        if constexpr (CountsVectors<Codec>)
            if (end - text.at >= long{shortestForKernel}) {
                auto const done = codec.countVectors(text.at, end);
                count += done.count;
                taken = done.src - text.at;
                text.at = done.src;
                text.left -= static_cast<unsigned long>(taken);
            }
        for (unsigned left = turns.charactersAfter(taken); left != 0; --left) {
            Counted const found = text.has(0) ? countOne(text) : Counted{0, 0};
            if (found.elements == 0)
                return count;
            count += found.units;
            text.at += found.elements;
            text.left -= found.elements;
        }
    }
}

constexpr auto uncounted = static_cast<unsigned long>(-1); // as a length: up to the terminator

/// `VynCharSetConverter::getNumUnits`: what the first `len` bytes decode to, or those up to the terminator if that comes
/// first. The end of the counted bytes cuts a character off as the terminator would.
template <class CodecOf>
unsigned long countUnits(CodecOf codecOf, void const* src, unsigned long len) {
    if (!src || len == 0)
        return 0;
    auto const codec = codecOf();
    using Element = typename decltype(codec)::Element;
    if (len == uncounted && sizeof(Element) == 1)
        len = std::strlen(static_cast<char const*>(src));
    unsigned long const elements = len == uncounted ? len : len / sizeof(Element);
    Limited const text{static_cast<Element const*>(src), codec.ready() ? elements : 0};
    return countText(codec, text, [&](auto at) { return countCharacter(codec, at); });
}

/// `VynCharSetConverter::getNumBytes`: a "?" for each character that can't be converted. A character that the end of the
/// counted units, or of the text, cuts off ends the count and adds nothing.
template <class CodecOf>
unsigned long countBytes(CodecOf codecOf, unsigned short const* src, unsigned long len) {
    if (!src || len == 0)
        return 0;
    auto const codec = codecOf();
    Limited const text{src, codec.ready() ? len : 0};
    unsigned long const elements = countText(codec, text, [&](auto at) {
        Encoded const found = codec.encodeOne(at);
        if (found.cutShort || found.endsText)
            return Counted{0, 0};
        return Counted{found.units, found.mapped ? found.elements : 1};
    });
    return elements * sizeof(typename decltype(codec)::Element);
}

} // namespace vyn
