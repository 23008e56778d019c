#include <vynulib/Transcoding.h>

#include "base/UnitEscape.h"
#include "charset/ServedSets.h"

#include <algorithm>
#include <limits>

namespace vynulib {
namespace {

using vyn::ServedSet;

// Pieces of whole texts, small enough to stay in the first-level cache together.
constexpr std::size_t pieceUnits = 2048;
constexpr std::size_t pieceBytes = 8192;

constexpr char16_t replacementCharacter[] = u"\uFFFD";
constexpr char16_t questionMark[] = u"?";

Progress decodePiece(ServedSet const& set, std::string_view source, char16_t* dst, std::size_t room, bool last) {
    return set.operations->decode(set.converter, source, dst, room, last);
}

Progress encodePiece(ServedSet const& set, std::u16string_view source, char* dst, std::size_t room, bool last) {
    return set.operations->encode(set.converter, source, dst, room, last);
}

/// Appends a piece of the result. `done` of `all` elements of the source have been converted, which tells how much is
/// still to come: the result grows once or twice.
template <class String>
void append(String& result, typename String::value_type const* piece, std::size_t length, std::size_t done,
            std::size_t all) {
    std::size_t const size = result.size() + length;
    if (size > result.capacity() && done != 0) {
        double const expected = static_cast<double>(size) * static_cast<double>(all) / static_cast<double>(done);
        result.reserve(std::max({size, 2 * result.capacity(), static_cast<std::size_t>(expected)}));
    }
    result.append(piece, length);
}

/// What a conversion lost so far, and what becomes of a loss.
class Losses {
public:
    explicit Losses(OnError onError) : m_onError(onError) {}

    /// Takes a loss; `position()` tells where it begins and is called for the first one only. False: the text ends.
    template <class Position>
    bool take(Position position) {
        if (m_report.losses++ == 0)
            m_report.firstLoss = position();
        return m_onError != OnError::stop;
    }

    OnError onError() const { return m_onError; }

    void tell(Report* report) const {
        if (report)
            *report = m_report;
    }

private:
    OnError m_onError;
    Report m_report;
};

/// Text that the set has for certain.
void appendEncoded(std::string& result, ServedSet const& to, std::u16string_view text) {
    char bytes[2 * vyn::unitEscapeLength * 4]; // two escapes in UTF-32
    result.append(bytes, encodePiece(to, text, bytes, sizeof bytes, true).written);
}

void appendReplacement(std::string& result, ServedSet const& to) {
    appendEncoded(result, to, to.operations->unicode ? replacementCharacter : questionMark);
}

/// What stands for units that `to` lacks.
void appendLost(std::string& result, ServedSet const& to, std::u16string_view lost, OnError onError) {
    if (onError == OnError::replace)
        appendReplacement(result, to);
    if (onError != OnError::escape)
        return;
    for (char16_t const unit : lost) {
        char16_t escape[vyn::unitEscapeLength];
        vyn::writeUnitEscape(escape, unit);
        appendEncoded(result, to, {escape, vyn::unitEscapeLength});
    }
}

/// The way of a text from one set to another by way of a piece of UTF-16.
class Transcoding {
public:
    Transcoding(VynCharSet from, VynCharSet to, std::string_view source, OnError onError)
        : m_from(vyn::requireServedSet(from)), m_to(vyn::requireServedSet(to)), m_source(source), m_losses(onError) {}

    std::string run(Report* report) {
        while (convertPiece()) {
        }
        m_losses.tell(report);
        return std::move(m_result);
    }

private:
    /// False: the text ends.
    bool convertPiece() {
        m_pieceAt = m_at;
        Progress const done = decodePiece(m_from, m_source.substr(m_at), m_units + m_kept, pieceUnits - m_kept, true);
        m_at += done.read;
        // What follows a loss does not belong to what stands before it, whatever becomes of the loss.
        if (!encodeUnits(m_kept + done.written, done.status != Status::roomFull) || done.status == Status::done)
            return false;
        if (done.status == Status::unconvertible) {
            if (!m_losses.take([this] { return m_at; }))
                return false;
            if (m_losses.onError() != OnError::drop)
                appendReplacement(m_result, m_to);
            m_at += done.length;
        }
        return true;
    }

    /// Encodes the piece, but for a high surrogate at its end whose low one may follow. False: the text ends.
    bool encodeUnits(std::size_t count, bool last) {
        std::size_t unit = 0;
        for (;;) {
            Progress const done = encodePiece(m_to, {m_units + unit, count - unit}, m_bytes, pieceBytes, last);
            append(m_result, m_bytes, done.written, m_at, m_source.size());
            unit += done.read;
            if (done.status == Status::done)
                break;
            if (done.status == Status::roomFull)
                continue;
            if (!m_losses.take([&] { return positionOf(unit); }))
                return false;
            appendLost(m_result, m_to, {m_units + unit, done.length}, m_losses.onError());
            unit += done.length;
        }
        if (unit < count)
            m_keptAt = positionOf(unit);
        m_kept = count - unit;
        std::copy_n(m_units + unit, m_kept, m_units);
        return true;
    }

    /// Where in the source a unit of the piece begins: the piece is decoded once more up to it.
    std::size_t positionOf(std::size_t unit) const {
        if (unit < m_kept)
            return m_keptAt;
        char16_t units[pieceUnits];
        return m_pieceAt + decodePiece(m_from, m_source.substr(m_pieceAt), units, unit - m_kept, true).read;
    }

    ServedSet const& m_from;
    ServedSet const& m_to;
    std::string_view m_source;
    std::string m_result;
    Losses m_losses;
    std::size_t m_at = 0;      // how far the source is decoded
    std::size_t m_pieceAt = 0; // where the piece was decoded from, without the kept unit
    std::size_t m_kept = 0;    // units in front of the piece that were left over from the one before: one at the most
    std::size_t m_keptAt = 0;
    char16_t m_units[pieceUnits];
    char m_bytes[pieceBytes];
};

std::size_t saturatedProduct(std::size_t a, std::size_t b) {
    std::size_t product;
    return __builtin_mul_overflow(a, b, &product) ? std::numeric_limits<std::size_t>::max() : product;
}

} // namespace

Progress decode(VynCharSet from, std::string_view source, char16_t* dst, std::size_t room, bool last) {
    return decodePiece(vyn::requireServedSet(from), source, dst, room, last);
}

Progress encode(VynCharSet to, std::u16string_view source, char* dst, std::size_t room, bool last) {
    return encodePiece(vyn::requireServedSet(to), source, dst, room, last);
}

std::u16string decode(VynCharSet from, std::string_view source, OnError onError, Report* report) {
    ServedSet const& set = vyn::requireServedSet(from);
    Losses losses(onError);
    std::u16string result;
    char16_t units[pieceUnits];
    for (std::size_t at = 0;;) {
        Progress const done = decodePiece(set, source.substr(at), units, pieceUnits, true);
        at += done.read;
        append(result, units, done.written, at, source.size());
        if (done.status == Status::roomFull)
            continue;
        if (done.status == Status::done || !losses.take([at] { return at; }))
            break;
        if (onError != OnError::drop)
            result += replacementCharacter[0];
        at += done.length;
    }
    losses.tell(report);
    return result;
}

std::string encode(VynCharSet to, std::u16string_view source, OnError onError, Report* report) {
    ServedSet const& set = vyn::requireServedSet(to);
    Losses losses(onError);
    std::string result;
    char bytes[pieceBytes];
    for (std::size_t at = 0;;) {
        Progress const done = encodePiece(set, source.substr(at), bytes, pieceBytes, true);
        at += done.read;
        append(result, bytes, done.written, at, source.size());
        if (done.status == Status::roomFull)
            continue;
        if (done.status == Status::done || !losses.take([at] { return at; }))
            break;
        appendLost(result, set, source.substr(at, done.length), onError);
        at += done.length;
    }
    losses.tell(report);
    return result;
}

std::string transcode(VynCharSet from, VynCharSet to, std::string_view source, OnError onError, Report* report) {
    return Transcoding(from, to, source, onError).run(report);
}

bool isValid(VynCharSet cs, std::string_view source) {
    ServedSet const& set = vyn::requireServedSet(cs);
    char16_t units[pieceUnits];
    for (;;) {
        Progress const done = decodePiece(set, source, units, pieceUnits, true);
        if (done.status != Status::roomFull)
            return done.status == Status::done;
        source.remove_prefix(done.read);
    }
}

std::size_t maxUnits(VynCharSet from, std::size_t bytes) {
    vyn::SetOperations const& operations = *vyn::requireServedSet(from).operations;
    std::size_t const elements = bytes / operations.elementSize + (bytes % operations.elementSize != 0 ? 1 : 0);
    return saturatedProduct(elements, operations.maxUnitsPerElement);
}

std::size_t maxBytes(VynCharSet to, std::size_t units) {
    // An escape takes more elements than any character of one unit.
    std::size_t const escapeLength = vyn::unitEscapeLength;
    return saturatedProduct(units, escapeLength * vyn::requireServedSet(to).operations->elementSize);
}

} // namespace vynulib
