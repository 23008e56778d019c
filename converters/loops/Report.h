#pragma once

#include "base/Surrogates.h"
#include "converters/loops/Decode.h"
#include "converters/loops/Encode.h"

#include <vynulib/Transcoding.h>

// Conversion of texts with a length: the loops that report a loss instead of replacing it.

namespace vyn {

using vynulib::Progress;
using vynulib::Status;

/// `vynulib::decode` of a piece.
template <DecodesPieces Codec>
Progress decodePiece(Codec const& codec, std::string_view source, char16_t* dst, std::size_t room, bool last) {
    using Element = typename Codec::Element;
    auto const* const start = reinterpret_cast<Element const*>(source.data());
    auto const* const end = start + source.size() / sizeof(Element);
    auto* const begin = reinterpret_cast<unsigned short*>(dst);
    DecodeCursor<Element> at{start, begin, room};
    Status status = Status::done;
    std::size_t lost = 0; // bytes
    for (unsigned untilBulk = 0; at.src != end; --untilBulk) {
        auto const left = static_cast<std::size_t>(end - at.src);
        if (untilBulk == 0) {
            auto const* const bulkEnd = at.src + std::min(left, at.room / Codec::maxUnitsPerElement);
            at.took(decodeBulk<Ample>(codec, at.src, bulkEnd, at.dst));
            untilBulk = charactersBetweenRuns + 1;
            continue;
        }
        Decoded const found = *at.src == 0 ? mappedUnit(0, 1) : codec.decodeOne(Bounded{at.src, left});
        if (found.cutShort && !last)
            break;
        if (!found.mapped) {
            status = Status::unconvertible;
            lost = found.elements * sizeof(Element);
            break;
        }
        if (found.units > at.room) {
            status = Status::roomFull;
            break;
        }
        at.dst = writeUnits(at.dst, found);
        at.room -= found.units;
        at.src += found.elements;
    }
    std::size_t const rest = source.size() % sizeof(Element);
    if (at.src == end && rest != 0 && last) {
        status = Status::unconvertible;
        lost = rest;
    }
    auto const read = static_cast<std::size_t>(at.src - start) * sizeof(Element);
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

/// `vynulib::encode` of a piece.
template <EncodesPieces Codec>
Progress encodePiece(Codec const& codec, std::u16string_view source, char* dst, std::size_t room, bool last) {
    using Element = typename Codec::Element;
    auto const* const start = reinterpret_cast<unsigned short const*>(source.data());
    auto const* const end = start + source.size();
    auto* const begin = reinterpret_cast<Element*>(dst);
    EncodeCursor<Element> at{start, begin, room / sizeof(Element)};
    Status status = Status::done;
    std::size_t lost = 0; // units
    for (unsigned untilBulk = 0; at.src != end; --untilBulk) {
        auto const left = static_cast<std::size_t>(end - at.src);
        if constexpr (EncodesBlocks<Codec>)
            if (untilBulk == 0) {
                // A bulk form may touch the room for a terminator, which is none here.
                std::size_t const bulkRoom = std::max(at.room, std::size_t{1}) - 1;
                auto const* const bulkEnd = at.src + std::min(left, bulkRoom / Codec::maxElementsPerUnit);
                at.took(codec.encodeBlocks(at.src, bulkEnd, at.dst));
                untilBulk = charactersBetweenRuns + 1;
                continue;
            }
        // Most characters are mapped and fit: they need no other test than that for surrogates.
        Encoded const usual = codec.encodeOne(Bounded{at.src, left});
        if (usual.mapped && usual.elements <= at.room && (usual.units == 2 || !isSurrogate(*at.src))) {
            writeCode(at.dst, usual.code, usual.elements);
            at.took(usual.units, usual.elements);
            continue;
        }
        Encoded const found = encodeStrictly(codec, {at.src, left});
        if (found.cutShort && !last)
            break;
        if (!found.mapped) {
            status = Status::unconvertible;
            lost = found.units;
            break;
        }
        if (found.elements > at.room) {
            status = Status::roomFull;
            break;
        }
        writeCode(at.dst, found.code, found.elements);
        at.took(found.units, found.elements);
    }
    auto const written = static_cast<std::size_t>(at.dst - begin) * sizeof(Element);
    return {status, static_cast<std::size_t>(at.src - start), written, lost};
}

} // namespace vyn
