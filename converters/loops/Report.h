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

/// What becomes of a loss.
struct LossRule {
    OnError onError = OnError::stop;
    unsigned short replacement = replacementCharacter; ///< Stands for a loss where one is replaced.

    bool stops() const { return onError == OnError::stop; }
    bool escapes() const { return onError == OnError::escape; }

    /// With what stands for the loss, on the way to UTF-16.
    Decoded replaced(Decoded found) const {
        found.value = replacement;
        found.units = onError == OnError::replace || escapes() ? 1 : 0;
        return found;
    }

    /// The same on the way from UTF-16, where `code` is the replacement in the set. An escape is no code, but elements.
    Encoded replaced(Encoded found, Encoded const& code) const {
        found.code = code.code;
        found.elements = onError == OnError::replace ? code.elements : escapes() ? found.units * unitEscapeLength : 0;
        return found;
    }
};

/// What becomes of the losses of a text, and what they were so far.
struct Losses {
    LossRule rule = {};
    std::size_t before = 0; ///< Elements of the text that stand before the piece.
    vynulib::Report report = {};

    /// Adds so many losses, the first of which begins at `first` in the piece.
    void add(std::size_t count, std::size_t first) {
        if (report.losses == 0 && count != 0)
            report.firstLoss = before + first;
        report.losses += count;
    }
};

/// How a piece ends, either way.
class PieceEnd {
protected:
    PieceEnd(bool last, Losses& losses) : m_last(last), m_losses(losses) {}

    void endWith(Status status, std::size_t lost = 0) {
        m_ended = true;
        m_status = status;
        m_lost = lost;
    }

    bool m_last; // no piece follows
    Losses& m_losses;
    bool m_ended = false; // before the end of the piece
    Status m_status = Status::done;
    std::size_t m_lost = 0; // elements of the source
};

/// `vynulib::decode` of a piece, through all losses but with `OnError::stop`.
template <DecodesPieces Codec>
class PieceDecoder : PieceEnd {
public:
    PieceDecoder(Codec const& codec, std::string_view source, bool last, Losses& losses)
        : PieceEnd(last, losses), m_codec(codec), m_source(source) {}

    [[gnu::always_inline]] Progress run(char16_t* dst, std::size_t room) {
        auto* const begin = reinterpret_cast<unsigned short*>(dst);
        BulkDecoded<Element> done{start(), begin};
        if constexpr (DecodesVectors<Codec>) {
            std::size_t const ahead = elementsAhead(done.src, room);
            if (ahead >= shortestForKernel) {
                done = m_codec.decodeVectors(done.src, done.src + ahead, begin);
                room -= static_cast<std::size_t>(done.dst - begin);
            }
            if (bytesTo(done.src) == m_source.size()) // part of an element may be left
                return {Status::done, m_source.size(), static_cast<std::size_t>(done.dst - begin), 0};
        }
        return runInTurns({done.src, done.dst, room}, begin);
    }

private:
    using Element = typename Codec::Element;
    using Cursor = DecodeCursor<Element>;

    std::size_t elementsAhead(Element const* src, std::size_t room) const {
        return std::min(static_cast<std::size_t>(end() - src), elementsThatFit<Codec>(room));
    }

    /// Goes on, both paths in turns. Out of the way of pieces that end where a bulk form does.
    [[gnu::noinline]] Progress runInTurns(Cursor const& cursor, unsigned short const* begin) {
        Cursor at = cursor;
        Codec const codec = m_codec;
        Element const* const textEnd = end();
        Turns turns;
        while (!m_ended && at.src != textEnd) {
            std::size_t const ahead = elementsAhead(at.src, at.room);
            long const taken = at.took(decodeBulk<Ample>(codec, at.src, at.src + ahead, at.dst));
            for (unsigned left = turns.charactersAfter(taken); left != 0 && at.src != textEnd; --left) {
                Decoded const found = decodeNext(codec, at.src, textEnd);
                if (!found.mapped || found.cutShort || found.units > at.room) {
                    at = decodeRough(at);
                    break;
                }
                take(at, found);
            }
        }
        std::size_t read = bytesTo(at.src);
        if (!m_ended && m_last && read != m_source.size())
            read += takeRest(at);
        return {m_status, read, static_cast<std::size_t>(at.dst - begin), m_lost};
    }

    Element const* start() const { return reinterpret_cast<Element const*>(m_source.data()); }
    Element const* end() const { return start() + m_source.size() / sizeof(Element); }
    std::size_t bytesTo(Element const* at) const { return static_cast<std::size_t>(at - start()) * sizeof(Element); }

    static Decoded decodeNext(Codec const& codec, Element const* at, Element const* textEnd) {
        return *at == 0 ? mappedUnit(0, 1) : codec.decodeOne(Bounded{at, static_cast<std::size_t>(textEnd - at)});
    }

    static void take(Cursor& at, Decoded const& found) {
        at.dst = writeUnits(at.dst, found);
        at.room -= found.units;
        at.src += found.elements;
    }

    /// The literal path with all that may happen to a character, until enough have been regular. Out of the way of the
    /// other path, whose cursor stays in registers.
    [[gnu::noinline]] Cursor decodeRough(Cursor at) {
        // Copies, as nothing that is written can change them.
        Codec const codec = m_codec;
        LossRule const rule = m_losses.rule;
        Element const* const textEnd = end();
        bool const last = m_last;
        std::size_t count = 0, first = 0;
        for (unsigned regular = 0; regular < regularAgain && at.src != textEnd; ++regular) {
            Decoded found = decodeNext(codec, at.src, textEnd);
            if (found.cutShort && !last) {
                endWith(Status::done);
                break;
            }
            if (!found.mapped)
                found = rule.replaced(found);
            if (found.units > at.room) {
                endWith(Status::roomFull);
                break;
            }
            if (!found.mapped) {
                if (count++ == 0)
                    first = bytesTo(at.src);
                if (rule.stops()) {
                    endWith(Status::unconvertible, found.elements * sizeof(Element));
                    break;
                }
                regular = 0;
            }
            take(at, found);
            if constexpr (HasLoneElements<Codec>)
                if (!found.mapped)
                    count += takeLone(at, textEnd, rule);
        }
        m_losses.add(count, first);
        return at;
    }

    /// Takes lone elements until enough of them have been regular; returns how many were lost. Without a branch on that:
    /// where losses follow no pattern, each would be a wrong guess half of the time.
    static std::size_t takeLone(Cursor& at, Element const* textEnd, LossRule rule) {
        Decoded const loss = rule.replaced(unmapped(1));
        std::size_t count = 0;
        for (unsigned regular = 0; regular < regularAgain && at.room != 0 && at.src != textEnd; ++at.src) {
            Element const element = *at.src;
            if (!Codec::isLone(element))
                break;
            unsigned const lost = Codec::lostLone(element);
            unsigned const mapped = lost - 1; // as a mask
            *at.dst = static_cast<unsigned short>((element & mapped) | (loss.value & ~mapped));
            unsigned const units = (1 & mapped) | (loss.units & ~mapped);
            at.dst += units;
            at.room -= units;
            regular = (regular + 1) & mapped;
            count += lost;
        }
        return count;
    }

    /// Takes the bytes at the end of the text that are no element, as one loss. Returns how many were read.
    std::size_t takeRest(Cursor& at) {
        std::size_t const rest = m_source.size() % sizeof(Element);
        Decoded const found = m_losses.rule.replaced(unmapped(0));
        if (found.units > at.room) {
            endWith(Status::roomFull);
            return 0;
        }
        m_losses.add(1, bytesTo(at.src));
        if (m_losses.rule.stops()) {
            endWith(Status::unconvertible, rest);
            return 0;
        }
        take(at, found);
        return rest;
    }

    Codec m_codec;
    std::string_view m_source;
};

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

/// `vynulib::encode` of a piece, through all losses but with `OnError::stop`.
template <EncodesPieces Codec>
class PieceEncoder : PieceEnd {
public:
    PieceEncoder(Codec const& codec, std::u16string_view source, bool last, Losses& losses)
        : PieceEnd(last, losses), m_codec(codec), m_source(source) {}

    [[gnu::always_inline]] Progress run(char* dst, std::size_t room) {
        auto* const begin = reinterpret_cast<Element*>(dst);
        BulkEncoded<Element> done{start(), begin};
        room /= sizeof(Element);
        if constexpr (EncodesVectors<Codec>) {
            std::size_t const ahead = unitsAhead(done.src, room);
            if (areWorthKernel(done.src, ahead)) {
                done = m_codec.encodeVectors(done.src, done.src + ahead, begin);
                room -= static_cast<std::size_t>(done.dst - begin);
            }
            if (done.src == end())
                return {Status::done, m_source.size(), static_cast<std::size_t>(done.dst - begin) * sizeof(Element), 0};
        }
        return runInTurns({done.src, done.dst, room}, begin);
    }

private:
    using Element = typename Codec::Element;
    using Cursor = EncodeCursor<Element>;

    /// What fits for certain, whatever it becomes. A bulk form may touch the room for a terminator, which is none here.
    std::size_t unitsAhead(unsigned short const* src, std::size_t room) const {
        std::size_t const roomBefore = std::max(room, std::size_t{1}) - 1;
        return std::min(static_cast<std::size_t>(end() - src), roomBefore / Codec::maxElementsPerUnit);
    }

    /// Goes on, both paths in turns. Out of the way of pieces that end where a bulk form does.
    [[gnu::noinline]] Progress runInTurns(Cursor const& cursor, Element const* begin) {
        Cursor at = cursor;
        Codec const codec = m_codec;
        unsigned short const* const textEnd = end();
        Turns turns;
        while (!m_ended && at.src != textEnd) {
            std::size_t const ahead = unitsAhead(at.src, at.room);
            long const taken = at.took(encodeBulk(codec, at.src, at.src + ahead, at.dst));
            for (unsigned left = turns.charactersAfter(taken); left != 0 && at.src != textEnd; --left) {
                Bounded const text{at.src, static_cast<std::size_t>(textEnd - at.src)};
                Encoded const found = text[0] == 0 ? mappedCode(0, 1, 1) : codec.encodeOne(text);
                if (!found.mapped || found.elements > at.room) {
                    at = encodeRough(at);
                    break;
                }
                writeCode(at.dst, found.code, found.elements);
                at.took(found.units, found.elements);
            }
        }
        auto const written = static_cast<std::size_t>(at.dst - begin) * sizeof(Element);
        return {m_status, static_cast<std::size_t>(at.src - start()), written, m_lost};
    }

    unsigned short const* start() const { return reinterpret_cast<unsigned short const*>(m_source.data()); }
    unsigned short const* end() const { return start() + m_source.size(); }

    /// The literal path with all that may happen to a character, until enough have been regular. Out of the way of the
    /// other path, whose cursor stays in registers.
    [[gnu::noinline]] Cursor encodeRough(Cursor at) {
        // Copies, as nothing that is written can change them.
        Codec const codec = m_codec;
        LossRule const rule = m_losses.rule;
        Encoded const replacement = codec.encodeOne(Bounded{&rule.replacement, 1});
        unsigned short const* const textEnd = end();
        bool const last = m_last;
        std::size_t count = 0, first = 0;
        for (unsigned regular = 0; regular < regularAgain && at.src != textEnd; ++regular) {
            Encoded found = encodeStrictly(codec, Bounded{at.src, static_cast<std::size_t>(textEnd - at.src)});
            if (found.cutShort && !last) {
                endWith(Status::done);
                break;
            }
            if (!found.mapped)
                found = rule.replaced(found, replacement);
            if (found.elements > at.room) {
                endWith(Status::roomFull);
                break;
            }
            if (!found.mapped) {
                if (count++ == 0)
                    first = static_cast<std::size_t>(at.src - start());
                if (rule.stops()) {
                    endWith(Status::unconvertible, found.units);
                    break;
                }
                regular = 0;
            }
            if (!found.mapped && rule.escapes())
                writeEscapes(at, found.units);
            else if (found.elements != 0)
                writeCode(at.dst, found.code, found.elements);
            at.took(found.units, found.elements);
        }
        m_losses.add(count, first);
        return at;
    }

    static void writeEscapes(Cursor const& at, unsigned units) {
        for (unsigned i = 0; i < units; ++i)
            writeUnitEscape(at.dst + i * unitEscapeLength, at.src[i]);
    }

    Codec m_codec;
    std::u16string_view m_source;
};

} // namespace vyn
