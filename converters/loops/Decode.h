#pragma once

#include "base/Surrogates.h"
#include "converters/kernels/AsciiRun.h"
#include "converters/kernels/Kernels.h"
#include "converters/loops/Codec.h"
#include "converters/loops/Run.h"

namespace vyn {

template <class Element>
struct DecodeCursor {
    Element const* src;
    unsigned short* dst;
    unsigned long room;
    bool sawIllegal = false;

    /// Whether neither the text ends here nor the room.
    bool hasMore() const { return room != 0 && *src != 0; }

    /// Returns the elements taken.
    long took(BulkDecoded<Element> const& done) {
        long const elements = done.src - src;
        room -= static_cast<unsigned long>(done.dst - dst);
        src = done.src;
        dst = done.dst;
        sawIllegal |= done.sawIllegal;
        return elements;
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

/// Goes on from a character that could not be converted until enough have been regular: in hostile text others are near,
/// and it must not cost much more than other text. For policies that replace, without a source limit. Out of the way of
/// the other path, whose cursor stays in registers.
template <Decodes Codec>
[[gnu::noinline]] BulkDecoded<typename Codec::Element> decodeRough(Codec codec, typename Codec::Element const* src,
                                                                   unsigned short* dst, unsigned long room) {
    unsigned left = roughAtMost;
    for (unsigned regular = 0; regular < regularAgain && left != 0 && room != 0 && *src != 0; ++regular, --left) {
        Decoded found = codec.decodeOne(Terminated{src});
        if (found.units > room)
            break;
        if (!found.mapped) {
            found.value = replacementCharacter;
            regular = 0;
        }
        dst = writeUnits(dst, found);
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
    using Here = Text<typename Codec::Element>;
    while (end - src >= Here::certain) {
        if constexpr (KeepsAscii<Codec>)
            if (codec.keepsAscii()) {
                long const moved = movePrintableBlocks(src, end, dst);
                src += moved;
                dst += moved;
            }
        auto const* const stepsEnd = src + std::min(elementsBetweenAscii, end - src);
        while (stepsEnd - src >= Here::certain) {
            Decoded found;
            if constexpr (DecodesAhead<Codec>)
                found = codec.decodeAhead(src);
            else
                found = codec.decodeOne(Here{src});
            if (!found.mapped)
                return {src, dst};
            dst = writeUnits(dst, found);
            src += found.elements;
        }
    }
    return {src, dst};
}

/// The fast path: regular characters, as far as neither the end of the text nor the room can end it.
template <template <class> class Text, class Codec>
[[gnu::always_inline]] inline BulkDecoded<typename Codec::Element>
decodeBulk(Codec const& codec, typename Codec::Element const* src, typename Codec::Element const* end,
           unsigned short* dst) {
    BulkDecoded<typename Codec::Element> done{src, dst};
    if constexpr (DecodesVectors<Codec>)
        if (end - src >= long{shortestForKernel})
            done = codec.decodeVectors(src, end, dst);
    if (done.src == end)
        return done;
    bool const sawIllegal = done.sawIllegal;
    if constexpr (DecodesBlocks<Codec>)
        done = codec.decodeBlocks(done.src, end, done.dst);
    else
        done = decodeSteps<Text>(codec, done.src, end, done.dst);
    done.sawIllegal |= sawIllegal;
    return done;
}

/// The literal path alone, to the end of the text, the room or the source limit, in elements.
template <Decodes Codec>
[[gnu::noinline]] BulkDecoded<typename Codec::Element>
decodeUpTo(long limit, Codec codec, DecodeCursor<typename Codec::Element> const& from, ILLCHAR_OPTYPE op) {
    auto at = from;
    auto const* const start = at.src;
    Decoded found;
    while (at.hasMore() && decodeCharacter(codec, at, found, op))
        if (found.limited && at.src - start >= limit)
            break;
    return {at.src, at.dst, at.sawIllegal};
}

/// Elements that fit for certain, whatever they become.
template <class Codec>
constexpr unsigned long elementsThatFit(unsigned long room) {
    return room / Codec::maxUnitsPerElement;
}

/// Both paths in turns.
template <Decodes Codec>
[[gnu::always_inline]] inline DecodeCursor<typename Codec::Element>
decodeInTurns(Codec const& codec, DecodeCursor<typename Codec::Element> at, Run<typename Codec::Element> run,
              ILLCHAR_OPTYPE op) {
    Turns turns;
    Decoded found;
    while (at.hasMore()) {
        long taken = 0;
        if constexpr (sizeof(typename Codec::Element) == 1) {
            unsigned long const ahead = run.ahead(at.src, elementsThatFit<Codec>(at.room));
            taken = at.took(decodeBulk<TerminatedLater>(codec, at.src, at.src + ahead, at.dst));
            if (!at.hasMore())
                break;
            if (tookLongRun(taken, ahead))
                continue;
        }
        for (unsigned left = turns.charactersAfter(taken); left != 0 && at.hasMore(); --left) {
            if (!decodeCharacter(codec, at, found, op))
                return at;
            if (!found.mapped)
                at.took(decodeRough(codec, at.src, at.dst, at.room));
        }
    }
    return at;
}

/// Out of the way of texts that end where a bulk form does.
template <Decodes Codec>
[[gnu::noinline]] BulkDecoded<typename Codec::Element>
goOnDecoding(Codec codec, DecodeCursor<typename Codec::Element> const& from, Run<typename Codec::Element> run,
             ILLCHAR_OPTYPE op) {
    auto const at = decodeInTurns(codec, from, run, op);
    return {at.src, at.dst, at.sawIllegal};
}

/// Without a source limit. There is no cursor on the way of a text that is one regular run: it would be kept in memory.
template <Decodes Codec>
[[gnu::always_inline]] inline BulkDecoded<typename Codec::Element>
decodeAll(Codec const& codec, typename Codec::Element const* src, unsigned short* dst, unsigned long room,
          ILLCHAR_OPTYPE op) {
    Run<typename Codec::Element> run(src, op);
    BulkDecoded<typename Codec::Element> done{src, dst};
    if constexpr (DecodesVectors<Codec>) {
        unsigned long const ahead = run.ahead(src, elementsThatFit<Codec>(room));
        if (ahead >= shortestForKernel) {
            done = codec.decodeVectors(src, src + ahead, dst);
            room -= static_cast<unsigned long>(done.dst - dst);
        }
        if (room == 0 || *done.src == 0)
            return done;
    }
    return goOnDecoding(codec, {done.src, done.dst, room, done.sawIllegal}, run, op);
}

/// `VynCharSetConverter::toUTF16` of the set whose codec `codecOf` returns. `limit` is the source limit in elements, 0
/// or less for none.
template <class CodecOf>
unsigned long decodeText(CodecOf codecOf, unsigned short* dst, void const* src, unsigned long room, ILLCHAR_OPTYPE op,
                         bool* illegal, long limit) {
    if (!dst || !src)
        return 0;
    auto const codec = codecOf();
    using Element = typename decltype(codec)::Element;
    if (!codec.ready())
        room = 0;
    auto const* const text = static_cast<Element const*>(src);
    auto const done =
        limit > 0 ? decodeUpTo(limit, codec, {text, dst, room}, op) : decodeAll(codec, text, dst, room, op);
    *done.dst = 0;
    if (illegal)
        *illegal = done.sawIllegal;
    return static_cast<unsigned long>(done.dst - dst);
}

} // namespace vyn
