#include <vynulib/Transcoding.h>

#include "base/UnitEscape.h"
#include "charset/ServedSets.h"
#include "converters/loops/Report.h"

#include <algorithm>
#include <limits>

namespace vynulib {
namespace {

using vyn::Losses;
using vyn::ServedSet;

constexpr std::size_t pieceUnits = 2048;    // of UTF-16 between two sets: stays in the first-level cache
constexpr std::size_t pieceElements = 8192; // that a result grows by

Progress decodePiece(ServedSet const& set, std::string_view source, char16_t* dst, std::size_t room, bool last,
                     Losses& losses) {
    return set.operations->decode(set.converter, source, dst, room, last, losses);
}

Progress encodePiece(ServedSet const& set, std::u16string_view source, char* dst, std::size_t room, bool last,
                     Losses& losses) {
    return set.operations->encode(set.converter, source, dst, room, last, losses);
}

/// Losses whose replacement can be written in the set.
Losses lossesIn(ServedSet const& set, OnError onError) {
    unsigned const replacement = set.operations->unicode ? vyn::replacementCharacter : vyn::replacementElement;
    return {{onError, static_cast<unsigned short>(replacement)}};
}

std::size_t saturatedProduct(std::size_t a, std::size_t b) {
    std::size_t product;
    return __builtin_mul_overflow(a, b, &product) ? std::numeric_limits<std::size_t>::max() : product;
}

std::size_t mostUnits(ServedSet const& from, std::size_t bytes) {
    std::size_t const size = from.operations->elementSize;
    return saturatedProduct(bytes / size + (bytes % size != 0 ? 1 : 0), from.operations->maxUnitsPerElement);
}

/// Bytes that a unit becomes at most, as a character or as a part of a loss.
std::size_t mostBytesPerUnit(ServedSet const& to, OnError onError) {
    std::size_t const elements = to.operations->maxElementsPerUnit;
    std::size_t const most =
        onError == OnError::escape ? std::max<std::size_t>(elements, vyn::unitEscapeLength) : elements;
    return most * to.operations->elementSize;
}

/// What `convert(at, dst, room)` makes of a text of `size` elements, from element `at` on. It gets room for `step` elements
/// at a time, or as many as are enough for all that is left, which `most(elements)` tells.
template <class String, class Most, class Convert>
String convertWhole(std::size_t size, std::size_t step, Most most, Convert convert) {
    String result;
    for (std::size_t at = 0;;) {
        std::size_t const before = result.size();
        std::size_t const room = std::min(most(size - at), step);
        if (before + room > result.capacity() && at != 0) {
            // What is still to come is much like what came: the result grows once or twice.
            double const expected = static_cast<double>(before) * static_cast<double>(size) / static_cast<double>(at);
            result.reserve(std::max(2 * result.capacity(), static_cast<std::size_t>(expected) + room));
        }
        result.resize(before + room);
        Progress const done = convert(at, result.data() + before, room);
        result.resize(before + done.written);
        at += done.read;
        if (done.status != Status::roomFull)
            return result;
    }
}

/// The way of a piece of text from one set to another, by smaller pieces of UTF-16.
class Transcoding {
public:
    Transcoding(ServedSet const& from, ServedSet const& to, std::string_view source, bool last, OnError onError)
        : m_from(from), m_to(to), m_source(source), m_last(last), m_onError(onError) {}

    /// Goes on until what is left of the room is not enough for `least` units, whatever they become.
    Progress run(char* dst, std::size_t room, std::size_t least) {
        std::size_t const bytesPerUnit = mostBytesPerUnit(m_to, m_onError);
        for (std::size_t fitting = room / bytesPerUnit;; fitting = (room - m_done.written) / bytesPerUnit) {
            if (fitting < least && m_done.read != 0) {
                m_done.status = Status::roomFull;
                return m_done;
            }
            // Where no unit fits for certain, the next character is tried.
            std::size_t const count = std::clamp(fitting, std::size_t{2}, pieceUnits);
            if (!convertUnits(count, dst + m_done.written, room - m_done.written))
                return m_done;
        }
    }

    /// What was lost on the way, by places in the piece.
    Report const& report() const { return m_report; }

private:
    /// Converts at most `count` units. False: no more can be converted.
    bool convertUnits(std::size_t count, char* dst, std::size_t room) {
        Losses decoding, encoding = lossesIn(m_to, m_onError);
        Progress const decoded = decodeUnits(count, decoding);
        bool const lost = decoded.status == Status::unconvertible;
        // What follows a loss does not belong to what stands before it, whatever becomes of the loss.
        bool const last = lost || (decoded.status == Status::done && m_last);
        Progress encoded = encodePiece(m_to, {m_units, decoded.written}, dst, room, last, encoding);
        std::size_t read = decoded.read;
        if (encoded.read != decoded.written) {
            // What was not encoded begins where the units before it end when they are decoded once more.
            Progress const again = decodeUnits(encoded.read, decoding);
            read = again.read;
            if (again.written !=
                encoded.read) { // half a character, of which a set of escapes writes each half by itself
                encoding = lossesIn(m_to, m_onError);
                encoded = encodePiece(m_to, {m_units, again.written}, dst, room, true, encoding);
                encoded.status = Status::roomFull;
            }
        }
        note(decoding.report, encoding.report);
        m_done.read += read;
        m_done.written += encoded.written;
        m_done.status = encoded.status;
        if (encoded.status == Status::unconvertible)
            m_done.length = decodeUnits(encoded.length, decoding).read;
        if (encoded.status != Status::done)
            return false;
        if (!lost)
            return decoded.status == Status::roomFull;
        if (m_onError == OnError::drop) {
            m_done.read += decoded.length;
            return true;
        }
        m_done.status = Status::unconvertible;
        m_done.length = decoded.length;
        return false;
    }

    /// Decodes up to `count` units from where the piece is converted to.
    Progress decodeUnits(std::size_t count, Losses& losses) {
        losses = lossesIn(m_to, m_onError);
        // What is dropped still separates the halves of a pair: each loss ends the units before it.
        if (m_onError == OnError::drop && m_from.operations->loneSurrogates)
            losses.rule.onError = OnError::stop;
        return decodePiece(m_from, m_source.substr(m_done.read), m_units, count, m_last, losses);
    }

    /// Adds what was lost in decoding and in encoding the same units.
    void note(Report const& decoding, Report const& encoding) {
        std::size_t const losses = decoding.losses + encoding.losses;
        if (m_report.losses == 0 && losses != 0) {
            Losses ignored;
            std::size_t const encodingLoss =
                encoding.losses != 0 ? decodeUnits(encoding.firstLoss, ignored).read : encoding.firstLoss;
            m_report.firstLoss = m_done.read + std::min(decoding.firstLoss, encodingLoss);
        }
        m_report.losses += losses;
    }

    ServedSet const& m_from;
    ServedSet const& m_to;
    std::string_view m_source;
    bool m_last;
    OnError m_onError;
    Progress m_done{Status::done, 0, 0, 0};
    Report m_report;
    char16_t m_units[pieceUnits];
};

void tell(Report* report, Report const& found) {
    if (report)
        *report = found;
}

} // namespace

Progress decode(VynCharSet from, std::string_view source, char16_t* dst, std::size_t room, bool last) {
    Losses losses;
    return decodePiece(vyn::requireServedSet(from), source, dst, room, last, losses);
}

Progress encode(VynCharSet to, std::u16string_view source, char* dst, std::size_t room, bool last) {
    Losses losses;
    return encodePiece(vyn::requireServedSet(to), source, dst, room, last, losses);
}

Progress transcode(VynCharSet from, VynCharSet to, std::string_view source, char* dst, std::size_t room, bool last,
                   OnError onError, Report* report) {
    Transcoding piece(vyn::requireServedSet(from), vyn::requireServedSet(to), source, last, onError);
    Progress const done = piece.run(dst, room, 0);
    tell(report, piece.report());
    return done;
}

std::u16string decode(VynCharSet from, std::string_view source, OnError onError, Report* report) {
    ServedSet const& set = vyn::requireServedSet(from);
    Losses losses{{onError}};
    auto const most = [&](std::size_t rest) { return mostUnits(set, rest); };
    auto const convert = [&](std::size_t at, char16_t* dst, std::size_t room) {
        losses.before = at;
        return decodePiece(set, source.substr(at), dst, room, true, losses);
    };
    auto result = convertWhole<std::u16string>(source.size(), pieceElements, most, convert);
    tell(report, losses.report);
    return result;
}

std::string encode(VynCharSet to, std::u16string_view source, OnError onError, Report* report) {
    ServedSet const& set = vyn::requireServedSet(to);
    Losses losses = lossesIn(set, onError);
    auto const most = [&](std::size_t rest) { return saturatedProduct(rest, mostBytesPerUnit(set, onError)); };
    auto const convert = [&](std::size_t at, char* dst, std::size_t room) {
        losses.before = at;
        return encodePiece(set, source.substr(at), dst, room, true, losses);
    };
    auto result = convertWhole<std::string>(source.size(), pieceElements, most, convert);
    tell(report, losses.report);
    return result;
}

std::string transcode(VynCharSet from, VynCharSet to, std::string_view source, OnError onError, Report* report) {
    ServedSet const& fromSet = vyn::requireServedSet(from);
    ServedSet const& toSet = vyn::requireServedSet(to);
    Losses losses;
    auto const most = [&](std::size_t rest) {
        return saturatedProduct(mostUnits(fromSet, rest), mostBytesPerUnit(toSet, onError));
    };
    auto const convert = [&](std::size_t at, char* dst, std::size_t room) {
        Transcoding piece(fromSet, toSet, source.substr(at), true, onError);
        Progress const done = piece.run(dst, room, pieceUnits / 2); // the rest of the room is not worth a smaller piece
        losses.before = at;
        losses.add(piece.report().losses, piece.report().firstLoss);
        return done;
    };
    std::size_t const longStep = 2 * pieceUnits * mostBytesPerUnit(toSet, onError);
    auto result = convertWhole<std::string>(source.size(), longStep, most, convert);
    tell(report, losses.report);
    return result;
}

bool isValid(VynCharSet cs, std::string_view source) {
    ServedSet const& set = vyn::requireServedSet(cs);
    Losses losses;
    char16_t units[pieceUnits];
    for (;;) {
        Progress const done = decodePiece(set, source, units, pieceUnits, true, losses);
        if (done.status != Status::roomFull)
            return done.status == Status::done;
        source.remove_prefix(done.read);
    }
}

std::size_t maxUnits(VynCharSet from, std::size_t bytes) {
    return mostUnits(vyn::requireServedSet(from), bytes);
}

std::size_t maxBytes(VynCharSet to, std::size_t units) {
    return saturatedProduct(units, mostBytesPerUnit(vyn::requireServedSet(to), OnError::escape));
}

} // namespace vynulib
