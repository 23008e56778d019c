#pragma once

#include "converters/kernels/AsciiRun.h"
#include "converters/kernels/Kernels.h"
#include "converters/loops/Codec.h"
#include "converters/loops/Run.h"

#include <cstring>

namespace vyn {

template <class Element>
struct EncodeCursor {
    unsigned short const* src;
    Element* dst;
    unsigned long room;
    bool sawIllegal = false;

    /// Whether neither the text ends here nor the room.
    bool hasMore() const { return room != 0 && *src != 0; }

    void took(unsigned units, unsigned elements) {
        src += units;
        dst += elements;
        room -= elements;
    }
    /// Returns the units taken.
    long took(BulkEncoded<Element> const& done) {
        long const units = done.src - src;
        room -= static_cast<unsigned long>(done.dst - dst);
        src = done.src;
        dst = done.dst;
        return units;
    }
};

/// How far the conversion of a text came.
template <class Element>
struct EncodedText {
    unsigned short const* src;
    Element* dst;
    bool sawIllegal = false;
};

inline void writeCode(unsigned char* dst, std::uint64_t code, unsigned bytes) {
    if (bytes == 4) {
        std::uint32_t const all = __builtin_bswap32(static_cast<std::uint32_t>(code));
        std::memcpy(dst, &all, sizeof all);
        return;
    }
    if (bytes > 2) {
        for (unsigned i = 0; i < bytes - 2; ++i)
            dst[i] = static_cast<unsigned char>(code >> 8 * (bytes - 1 - i));
        dst += bytes - 2;
        bytes = 2;
    }
    // No branch between one byte and two, which alternate in real text: one byte is written twice.
    dst[0] = static_cast<unsigned char>(code >> 8 * (bytes - 1));
    dst[bytes - 1] = static_cast<unsigned char>(code);
}
template <class Value, std::endian Order>
void writeCode(Unaligned<Value, Order>* dst, std::uint64_t code, unsigned elements) {
    for (unsigned i = 0; i < elements; ++i)
        dst[i] = static_cast<Value>(code >> 8 * sizeof(Value) * (elements - 1 - i));
}

/// Goes on from a character that could not be converted, with a "?" for each other, until enough have been regular: in
/// hostile text others are near, and it must not cost much more than other text. Out of the way of the other path, whose
/// cursor stays in registers.
template <Encodes Codec>
[[gnu::noinline]] BulkEncoded<typename Codec::Element> encodeRough(Codec codec, unsigned short const* src,
                                                                   typename Codec::Element* dst, unsigned long room) {
    for (unsigned regular = 0; regular < regularAgain && room != 0 && *src != 0; ++regular) {
        Encoded found = codec.encodeOne(Terminated{src});
        for (; !found.mapped && !found.endsText; found = codec.encodeOne(Terminated{src})) {
            *dst++ = replacementElement;
            src += found.units;
            regular = 0;
            if (--room == 0 || *src == 0)
                return {src, dst};
        }
        if (found.endsText || found.elements > room)
            break;
        writeCode(dst, found.code, found.elements);
        dst += found.elements;
        room -= found.elements;
        src += found.units;
    }
    return {src, dst};
}

/// The bulk form of a codec that has none of its own: mapped characters step by step, without a test of room and end of
/// text.
template <class Codec>
BulkEncoded<typename Codec::Element> encodeSteps(Codec const& codec, unsigned short const* src,
                                                 unsigned short const* end, typename Codec::Element* dst) {
    while (src != end) {
        if constexpr (KeepsAscii<Codec>)
            if (codec.keepsAscii()) {
                long const moved = movePrintableBlocks(src, end, dst);
                src += moved;
                dst += moved;
            }
        if constexpr (EncodesGroups<Codec>) {
            auto const groups = codec.encodeGroups(src, end, dst);
            src = groups.src;
            dst = groups.dst;
        }
        for (auto const* const stepsEnd = src + std::min(elementsBetweenAscii, end - src); src < stepsEnd;) {
            Encoded const found = codec.encodeOne(Bounded{src, static_cast<std::size_t>(end - src)});
            if (!found.mapped)
                return {src, dst};
            writeCode(dst, found.code, found.elements);
            src += found.units;
            dst += found.elements;
        }
    }
    return {src, dst};
}

/// The fast path: regular characters, as far as neither the end of the text nor the room can end it.
template <class Codec>
[[gnu::always_inline]] inline BulkEncoded<typename Codec::Element>
encodeBulk(Codec const& codec, unsigned short const* src, unsigned short const* end, typename Codec::Element* dst) {
    BulkEncoded<typename Codec::Element> done{src, dst};
    if constexpr (EncodesVectors<Codec>)
        if (areWorthKernel(src, static_cast<unsigned long>(end - src)))
            done = codec.encodeVectors(src, end, dst);
    if (done.src == end)
        return done;
    if constexpr (EncodesBlocks<Codec>)
        return codec.encodeBlocks(done.src, end, done.dst);
    else
        return encodeSteps(codec, done.src, end, done.dst);
}

/// Writes what stands for a character that can't be converted: an escape for each unit, or one "?" for all. False: the
/// text ends before it.
template <Encodes Codec>
[[gnu::always_inline]] inline bool encodeReplacement(Codec const& codec, EncodeCursor<typename Codec::Element>& at,
                                                     unsigned units, ILLCHAR_OPTYPE op) {
    at.sawIllegal = true;
    if (op == ILLCHAR_STOP)
        return false;
    if (op != ILLCHAR_ESCAPE) {
        *at.dst = replacementElement;
        at.took(units, 1);
        at.took(encodeRough(codec, at.src, at.dst, at.room));
        return true;
    }
    if (at.room < units * unitEscapeLength)
        return false;
    EscapeToll toll{units, units * unitEscapeLength};
    if constexpr (TakesEscapeToll<Codec>)
        toll = codec.escapeToll(Terminated{at.src});
    for (unsigned i = 0; i < units; ++i)
        at.dst = writeUnitEscape(at.dst, at.src[i]);
    at.src += toll.units;
    at.room -= toll.room;
    return true;
}

/// The literal path: one character, with all that may happen to it. False: the text ends before it.
template <Encodes Codec>
[[gnu::always_inline]] inline bool encodeCharacter(Codec const& codec, EncodeCursor<typename Codec::Element>& at,
                                                   ILLCHAR_OPTYPE op) {
    Encoded const found = codec.encodeOne(Terminated{at.src});
    if (found.endsText)
        return false;
    if (!found.mapped)
        return encodeReplacement(codec, at, found.units, op);
    if (found.elements > at.room)
        return false;
    writeCode(at.dst, found.code, found.elements);
    at.took(found.units, found.elements);
    return true;
}

/// Units that fit for certain, whatever they become. Divides by constants, which costs less than a short text.
template <Encodes Codec>
constexpr unsigned long unitsThatFit(unsigned long room, ILLCHAR_OPTYPE op) {
    constexpr unsigned escaped = std::max(Codec::maxElementsPerUnit, unitEscapeLength);
    return op == ILLCHAR_ESCAPE ? room / escaped : room / Codec::maxElementsPerUnit;
}

/// Both paths in turns.
template <Encodes Codec>
[[gnu::always_inline]] inline EncodeCursor<typename Codec::Element>
encodeInTurns(Codec const& codec, EncodeCursor<typename Codec::Element> at, Run<unsigned short> run,
              ILLCHAR_OPTYPE op) {
    Turns turns;
    while (at.hasMore()) {
        long taken = 0;
        if constexpr (sizeof(typename Codec::Element) == 1) {
            unsigned long const ahead = run.ahead(at.src, unitsThatFit<Codec>(at.room, op));
            taken = at.took(encodeBulk(codec, at.src, at.src + ahead, at.dst));
            if (!at.hasMore())
                break;
            if (tookLongRun(taken, ahead))
                continue;
        }
        for (unsigned left = turns.charactersAfter(taken); left != 0 && at.hasMore(); --left)
            if (!encodeCharacter(codec, at, op))
                return at;
    }
    return at;
}

/// Out of the way of texts that end where a bulk form does.
template <Encodes Codec>
[[gnu::noinline]] EncodedText<typename Codec::Element> goOnEncoding(Codec codec,
                                                                    EncodeCursor<typename Codec::Element> const& from,
                                                                    Run<unsigned short> run, ILLCHAR_OPTYPE op) {
    auto const at = encodeInTurns(codec, from, run, op);
    return {at.src, at.dst, at.sawIllegal};
}

/// There is no cursor on the way of a text that is one regular run: it would be kept in memory.
template <Encodes Codec>
[[gnu::always_inline]] inline EncodedText<typename Codec::Element>
encodeAll(Codec const& codec, unsigned short const* src, typename Codec::Element* dst, unsigned long room,
          ILLCHAR_OPTYPE op) {
    Run<unsigned short> run(src, op);
    BulkEncoded<typename Codec::Element> done{src, dst};
    if constexpr (EncodesVectors<Codec>) {
        unsigned long const ahead = run.ahead(src, unitsThatFit<Codec>(room, op));
        if (areWorthKernel(src, ahead)) {
            done = codec.encodeVectors(src, src + ahead, dst);
            room -= static_cast<unsigned long>(done.dst - dst);
        }
        if (room == 0 || *done.src == 0)
            return {done.src, done.dst};
    }
    return goOnEncoding(codec, {done.src, done.dst, room}, run, op);
}

/// `VynCharSetConverter::fromUTF16` of the set whose codec `codecOf` returns.
template <class CodecOf>
unsigned long encodeText(CodecOf codecOf, void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                         bool* illegal) {
    if (!dst || !src)
        return 0;
    auto const codec = codecOf();
    using Element = typename decltype(codec)::Element;
    auto* const start = static_cast<Element*>(dst);
    auto const done = encodeAll(codec, src, start, codec.ready() ? dstCap / sizeof(Element) : 0, op);
    *done.dst = Element{0};
    if (illegal)
        *illegal = done.sawIllegal;
    return static_cast<unsigned long>(done.dst - start) * sizeof(Element);
}

} // namespace vyn
