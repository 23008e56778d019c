#pragma once

#include "converters/loops/Codec.h"
#include "converters/loops/Run.h"

namespace vyn {

template <class Element>
struct EncodeCursor {
    unsigned short const* src;
    Element* dst;
    unsigned long room;
    bool sawIllegal = false;

    void took(unsigned units, unsigned elements) {
        src += units;
        dst += elements;
        room -= elements;
    }
    void took(BulkEncoded<Element> const& done) {
        room -= static_cast<unsigned long>(done.dst - dst);
        src = done.src;
        dst = done.dst;
    }
};

inline void writeCode(unsigned char* dst, std::uint64_t code, unsigned bytes) {
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

/// Goes on with a "?" for each of the characters that can't be converted and follow each other, as they do in hostile
/// text, which must not cost much more than other text. Out of the way of the other path, whose cursor stays in
/// registers.
template <Encodes Codec>
[[gnu::noinline]] BulkEncoded<typename Codec::Element> replaceMore(Codec codec, unsigned short const* src,
                                                                   typename Codec::Element* dst, unsigned long room) {
    for (; room != 0 && *src != 0; --room) {
        Encoded const found = codec.encodeOne(Terminated{src});
        if (found.mapped || found.endsText)
            break;
        *dst++ = replacementElement;
        src += found.units;
    }
    return {src, dst};
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
        at.took(replaceMore(codec, at.src, at.dst, at.room));
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

/// `VynCharSetConverter::fromUTF16` of the set whose codec `codecOf` returns.
template <class CodecOf>
unsigned long encodeText(CodecOf codecOf, void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                         bool* illegal) {
    if (!dst || !src)
        return 0;
    auto const codec = codecOf();
    using Codec = std::remove_const_t<decltype(codec)>;
    using Element = typename Codec::Element;
    auto* const start = static_cast<Element*>(dst);
    EncodeCursor<Element> at{src, start, codec.ready() ? dstCap / sizeof(Element) : 0};
    [[maybe_unused]] Run<unsigned short> run(src, op);
    [[maybe_unused]] unsigned untilBulk = 0;
    while (at.room != 0 && *at.src != 0) {
        if constexpr (EncodesBlocks<Codec>)
            if (untilBulk-- == 0) {
                // The fast path: regular characters, as far as neither terminator nor room can end the text.
                unsigned long const ahead = run.ahead(at.src, unitsThatFit<Codec>(at.room, op));
                at.took(codec.encodeBlocks(at.src, at.src + ahead, at.dst));
                untilBulk = charactersBetweenRuns;
                continue;
            }
        if (!encodeCharacter(codec, at, op))
            break;
    }
    *at.dst = Element{0};
    if (illegal)
        *illegal = at.sawIllegal;
    return static_cast<unsigned long>(at.dst - start) * sizeof(Element);
}

} // namespace vyn
