#pragma once

#include "base/Surrogates.h"
#include "converters/loops/Codec.h"
#include "converters/loops/Run.h"

namespace vyn {

template <class Element>
struct DecodeCursor {
    Element const* src;
    unsigned short* dst;
    unsigned long room;
    bool sawIllegal = false;

    void took(BulkDecoded<Element> const& done) {
        room -= static_cast<unsigned long>(done.dst - dst);
        src = done.src;
        dst = done.dst;
        sawIllegal |= done.sawIllegal;
    }
};

inline unsigned short* writeUnits(unsigned short* dst, Decoded const& found) {
    if (found.units == 2) {
        *dst++ = highSurrogateOf(found.value);
        *dst++ = lowSurrogateOf(found.value);
    } else if (found.units == 1) {
        *dst++ = static_cast<unsigned short>(found.value);
    }
    return dst;
}

/// The literal path: one character, with all that may happen to it. False: the text ends before it.
template <Decodes Codec>
[[gnu::always_inline]] inline bool decodeCharacter(Codec const& codec, DecodeCursor<typename Codec::Element>& at,
                                                   Decoded& found, ILLCHAR_OPTYPE op) {
    found = codec.decodeOne(Terminated{at.src});
    if (found.units > at.room) {
        if constexpr (!ReplacesPairsOutOfRoom<Codec>)
            return false;
        found = unmapped(1);
    }
    if (!found.mapped) {
        at.sawIllegal = true;
        if (op == ILLCHAR_STOP)
            return false;
        found.value = replacementCharacter;
    }
    at.dst = writeUnits(at.dst, found);
    at.room -= found.units;
    at.src += found.elements;
    return true;
}

/// Goes on through what can't be converted and follows each other, as it does in hostile text, which must not cost much
/// more than other text. For policies that replace, without a source limit. Out of the way of the other path, whose
/// cursor stays in registers.
template <Decodes Codec>
[[gnu::noinline]] BulkDecoded<typename Codec::Element> replaceMore(Codec codec, typename Codec::Element const* src,
                                                                   unsigned short* dst, unsigned long room) {
    while (room != 0 && *src != 0) {
        Decoded const found = codec.decodeOne(Terminated{src});
        if (found.mapped)
            break;
        *dst = static_cast<unsigned short>(replacementCharacter);
        dst += found.units;
        room -= found.units;
        src += found.elements;
    }
    return {src, dst};
}

/// The bulk form of a codec that has none of its own: mapped characters step by step, without a test of room and end of
/// text. The last elements are left, since the character that they begin may go on after `end`.
template <template <class> class Text, class Codec>
BulkDecoded<typename Codec::Element> decodeSteps(Codec const& codec, typename Codec::Element const* src,
                                                 typename Codec::Element const* end, unsigned short* dst) {
    while (end - src >= Text<typename Codec::Element>::certain) {
        Decoded found;
        if constexpr (DecodesAhead<Codec>)
            found = codec.decodeAhead(src);
        else
            found = codec.decodeOne(Text<typename Codec::Element>{src});
        if (!found.mapped)
            break;
        dst = writeUnits(dst, found);
        src += found.elements;
    }
    return {src, dst};
}

/// The fast path: regular characters, as far as neither the end of the text nor the room can end it.
template <template <class> class Text, class Codec>
BulkDecoded<typename Codec::Element> decodeBulk(Codec const& codec, typename Codec::Element const* src,
                                                typename Codec::Element const* end, unsigned short* dst) {
    if constexpr (DecodesBlocks<Codec>)
        return codec.decodeBlocks(src, end, dst);
    else
        return decodeSteps<Text>(codec, src, end, dst);
}

/// `VynCharSetConverter::toUTF16` of the set whose codec `codecOf` returns. `limit` is the source limit in elements, 0
/// or less for none.
template <class CodecOf>
unsigned long decodeText(CodecOf codecOf, unsigned short* dst, void const* src, unsigned long room, ILLCHAR_OPTYPE op,
                         bool* illegal, long limit) {
    if (!dst || !src)
        return 0;
    auto const codec = codecOf();
    using Codec = std::remove_const_t<decltype(codec)>;
    using Element = typename Codec::Element;
    auto const* const start = static_cast<Element const*>(src);
    DecodeCursor<Element> at{start, dst, codec.ready() ? room : 0};
    [[maybe_unused]] Run<Element> run(start, op);
    [[maybe_unused]] unsigned untilBulk = 0;
    Decoded found;
    while (at.room != 0 && *at.src != 0) {
        if constexpr (sizeof(Element) == 1)
            if (limit <= 0 && untilBulk-- == 0) {
                unsigned long const ahead = run.ahead(at.src, at.room / Codec::maxUnitsPerElement);
                at.took(decodeBulk<TerminatedLater>(codec, at.src, at.src + ahead, at.dst));
                untilBulk = charactersBetweenRuns;
                continue;
            }
        if (!decodeCharacter(codec, at, found, op))
            break;
        if (limit > 0 && found.limited && at.src - start >= limit)
            break;
        if (limit <= 0 && !found.mapped)
            at.took(replaceMore(codec, at.src, at.dst, at.room));
    }
    *at.dst = 0;
    if (illegal)
        *illegal = at.sawIllegal;
    return static_cast<unsigned long>(at.dst - dst);
}

} // namespace vyn
