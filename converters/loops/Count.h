#pragma once

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
    unsigned long units = 0;
    for (Limited text{static_cast<Element const*>(src), codec.ready() ? elements : 0}; text.has(0);) {
        Counted const found = countCharacter(codec, text);
        if (found.elements == 0)
            break;
        units += found.units;
        text.at += found.elements;
        text.left -= found.elements;
    }
    return units;
}

/// `VynCharSetConverter::getNumBytes`: a "?" for each character that can't be converted. A character that the end of the
/// counted units, or of the text, cuts off ends the count and adds nothing.
template <class CodecOf>
unsigned long countBytes(CodecOf codecOf, unsigned short const* src, unsigned long len) {
    if (!src || len == 0)
        return 0;
    auto const codec = codecOf();
    unsigned long elements = 0;
    for (Limited text{src, codec.ready() ? len : 0}; text.has(0);) {
        Encoded const found = codec.encodeOne(text);
        if (found.cutShort || found.endsText)
            break;
        elements += found.mapped ? found.elements : 1;
        text.at += found.units;
        text.left -= found.units;
    }
    return elements * sizeof(typename decltype(codec)::Element);
}

} // namespace vyn
