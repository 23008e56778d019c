#pragma once

#include "base/Surrogates.h"
#include "base/UnitEscape.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

#include <vynulib/Transcoding.h>

// Conversion of texts with a length: the loops that tell every loss.

namespace vyn {

using vynulib::OnError;
using vynulib::Progress;
using vynulib::Status;

/// What becomes of the losses of a text, and what they were so far.
struct Losses {
    OnError onError = OnError::stop;
    unsigned short replacement = replacementCharacter; ///< Stands for a loss where one is replaced.
    std::size_t before = 0;                            ///< Elements of the text that stand before the piece.
    vynulib::Report report = {};

    /// Takes a loss that begins at `position` in the piece. False: the text ends before it.
    bool take(std::size_t position) {
        if (report.losses++ == 0)
            report.firstLoss = before + position;
        return onError != OnError::stop;
    }
};

/// `vynulib::decode` of a piece, through all losses but with `OnError::stop`.
template <DecodesPieces Codec>
Progress decodePiece(Codec const& codec, std::string_view source, char16_t* dst, std::size_t room, bool last,
                     Losses& losses) {
    using Element = typename Codec::Element;
    auto const* const start = reinterpret_cast<Element const*>(source.data());
    auto const* const end = start + source.size() / sizeof(Element);
    auto* const begin = reinterpret_cast<unsigned short*>(dst);
    DecodeCursor<Element> at{start, begin, room};
    bool const replaces = losses.onError == OnError::replace || losses.onError == OnError::escape;
    Status status = Status::done;
    std::size_t read = 0, lost = 0; // bytes
    // False: the piece ends before what is lost.
    auto const lose = [&](std::size_t bytes) {
        read = static_cast<std::size_t>(at.src - start) * sizeof(Element);
        if (replaces && at.room == 0) {
            status = Status::roomFull;
            return false;
        }
        if (!losses.take(read)) {
            status = Status::unconvertible;
            lost = bytes;
            return false;
        }
        if (replaces) {
            *at.dst++ = losses.replacement;
            --at.room;
        }
        return true;
    };
    // False: the piece ends before the next character.
    auto const decodeNext = [&] {
        auto const left = static_cast<std::size_t>(end - at.src);
        Decoded const found = *at.src == 0 ? mappedUnit(0, 1) : codec.decodeOne(Bounded{at.src, left});
        if (found.cutShort && !last)
            return false;
        if (!found.mapped) {
            if (!lose(found.elements * sizeof(Element)))
                return false;
        } else if (found.units > at.room) {
            status = Status::roomFull;
            return false;
        } else {
            at.dst = writeUnits(at.dst, found);
            at.room -= found.units;
        }
        at.src += found.elements;
        return true;
    };
    Turns turns;
    for (bool goesOn = true; goesOn && at.src != end;) {
        auto const ahead = std::min(static_cast<std::size_t>(end - at.src), at.room / Codec::maxUnitsPerElement);
        long const taken = at.took(decodeBulk<Ample>(codec, at.src, at.src + ahead, at.dst));
        for (unsigned left = turns.charactersAfter(taken); left != 0 && goesOn && at.src != end; --left)
            goesOn = decodeNext();
    }
    read = static_cast<std::size_t>(at.src - start) * sizeof(Element);
    std::size_t const rest = source.size() % sizeof(Element);
    if (at.src == end && rest != 0 && last && lose(rest))
        read += rest;
    return {status, read, static_cast<std::size_t>(at.dst - begin), lost};
}

/// What the codec says of the character at the start of `text`. A surrogate is one only with its other half.
template <EncodesPieces Codec>
Encoded encodeStrictly(Codec const& codec, Bounded<unsigned short> text) {
    if (text[0] == 0)
        return mappedCode(0, 1, 1);
    if (EncodesSurrogates<Codec> || !isSurrogate(text[0]))
        return codec.encodeOne(text);
    if (!isHighSurrogate(text[0]) || !text.has(1) || !isLowSurrogate(text[1]))
        return unmappedUnits(1, isHighSurrogate(text[0]) && !text.has(1));
    Encoded const found = codec.encodeOne(text);
    return found.units == 2 ? found : unmappedUnits(2);
}

/// Writes what stands for so many lost units. False: it does not fit.
template <EncodesPieces Codec>
bool writeLost(Codec const& codec, EncodeCursor<typename Codec::Element>& at, unsigned units, Losses const& losses) {
    if (losses.onError == OnError::replace) {
        Encoded const found = codec.encodeOne(Bounded{&losses.replacement, 1});
        if (found.elements > at.room)
            return false;
        writeCode(at.dst, found.code, found.elements);
        at.took(0, found.elements);
    } else if (losses.onError == OnError::escape) {
        if (at.room < units * unitEscapeLength)
            return false;
        for (unsigned i = 0; i < units; ++i)
            writeUnitEscape(at.dst + i * unitEscapeLength, at.src[i]);
        at.took(0, units * unitEscapeLength);
    }
    return true;
}

/// `vynulib::encode` of a piece, through all losses but with `OnError::stop`.
template <EncodesPieces Codec>
Progress encodePiece(Codec const& codec, std::u16string_view source, char* dst, std::size_t room, bool last,
                     Losses& losses) {
    using Element = typename Codec::Element;
    auto const* const start = reinterpret_cast<unsigned short const*>(source.data());
    auto const* const end = start + source.size();
    auto* const begin = reinterpret_cast<Element*>(dst);
    EncodeCursor<Element> at{start, begin, room / sizeof(Element)};
    Status status = Status::done;
    std::size_t lost = 0; // units
    // False: the piece ends before the next character.
    auto const encodeNext = [&] {
        auto const left = static_cast<std::size_t>(end - at.src);
        Encoded found = codec.encodeOne(Bounded{at.src, left});
        if (!found.mapped) {
            found = encodeStrictly(codec, {at.src, left});
            if (found.cutShort && !last)
                return false;
        }
        if (found.mapped && found.elements <= at.room) {
            writeCode(at.dst, found.code, found.elements);
            at.took(found.units, found.elements);
            return true;
        }
        if (found.mapped || !writeLost(codec, at, found.units, losses)) {
            status = Status::roomFull;
            return false;
        }
        if (!losses.take(static_cast<std::size_t>(at.src - start))) {
            status = Status::unconvertible;
            lost = found.units;
            return false;
        }
        at.took(found.units, 0);
        return true;
    };
    Turns turns;
    for (bool goesOn = true; goesOn && at.src != end;) {
        // A bulk form may touch the room for a terminator, which is none here.
        std::size_t const bulkRoom = std::max(at.room, std::size_t{1}) - 1;
        auto const ahead = std::min(static_cast<std::size_t>(end - at.src), bulkRoom / Codec::maxElementsPerUnit);
        long const taken = at.took(encodeBulk(codec, at.src, at.src + ahead, at.dst));
        for (unsigned left = turns.charactersAfter(taken); left != 0 && goesOn && at.src != end; --left)
            goesOn = encodeNext();
    }
    auto const written = static_cast<std::size_t>(at.dst - begin) * sizeof(Element);
    return {status, static_cast<std::size_t>(at.src - start), written, lost};
}

} // namespace vyn
