#include "tools/vynconv/Transcoder.h"

#include "tools/vynconv/Input.h"
#include "tools/vynconv/Output.h"
#include "tools/vynconv/Progress.h"

#include <cstdint>
#include <cstring>

namespace vynconv {
namespace {

using vynulib::OnError;
using vynulib::Status;

// All three stay in the second-level cache.
constexpr std::size_t sourceBytes = 256UL * 1024;
constexpr std::size_t pieceUnits = 16UL * 1024;
constexpr std::size_t outputBytes = 64UL * 1024;

std::size_t countLines(std::u16string_view units) {
    static_assert(pieceUnits <= UINT16_MAX);
    std::uint16_t lines = 0; // as wide as the units, which lets the compiler count in vectors of them
    for (char16_t const unit : units)
        lines = static_cast<std::uint16_t>(lines + (unit == u'\n' ? 1 : 0));
    return lines;
}

} // namespace

Transcoder::Transcoder(InputSet from, VynCharSet to, OnError onError, Output& output)
    : m_fromNamed(from), m_to(to), m_onError(onError),
      m_replacement(vynulib::transcode(VYNCS_UTF8, to, "\xFF", onError)), m_output(output), m_source(sourceBytes),
      m_units(pieceUnits), m_bytes(outputBytes), m_from(from.cs) {}

Losses Transcoder::convert(Input& input, Progress& progress) {
    m_rest = {};
    m_ended = false;
    m_offset = 0;
    m_line = 1;
    m_losses = {};
    skipMark(input);
    for (;;) {
        while (convertPiece()) {
        }
        flush();
        progress.show(input, m_offset);
        if (m_ended || m_losses.stopped)
            return m_losses;
        readMore(input);
    }
}

// False: there is no more.
bool Transcoder::readMore(Input& input) {
    if (m_ended)
        return false;
    std::size_t const kept = m_rest.size();
    if (kept != 0)
        std::memmove(m_source.data(), m_rest.data(), kept);
    std::size_t const got = input.read(m_source.data() + kept, m_source.size() - kept);
    m_rest = {m_source.data(), kept + got};
    m_ended = got == 0;
    return !m_ended;
}

void Transcoder::skipMark(Input& input) {
    m_from = m_fromNamed.cs;
    for (VynCharSet const cs : {m_fromNamed.cs, m_fromNamed.ifMarked}) {
        std::string const mark = byteOrderMark(cs);
        while (m_rest.size() < mark.size() && mark.starts_with(m_rest) && readMore(input)) {
        }
        if (!mark.empty() && m_rest.starts_with(mark)) {
            m_from = cs;
            pass(mark.size());
            return;
        }
    }
}

// False: more has to be read, or all is done.
bool Transcoder::convertPiece() {
    vynulib::Progress const decoded = vynulib::decode(m_from, m_rest, m_units.data(), m_units.size(), m_ended);
    bool const lost = decoded.status == Status::unconvertible;
    // What follows a loss does not belong to what stands before it, whatever becomes of the loss.
    bool const last = lost || (decoded.status == Status::done && m_ended);
    std::u16string_view const units(m_units.data(), decoded.written);
    std::size_t const encoded = encodePiece(units, last);
    if (m_losses.stopped)
        return false;
    if (m_losses.count == 0)
        m_line += countLines(units.substr(0, encoded));
    // A high surrogate whose low one may follow is left; it is decoded again together with what follows.
    pass(encoded == units.size() ? decoded.read : bytesOf(encoded, m_rest));
    if (lost) {
        if (m_losses.count++ == 0)
            noteFirst(m_from, m_rest.substr(0, decoded.length), m_line);
        if (m_losses.stopped)
            return false;
        append(m_replacement);
        pass(decoded.length);
    }
    return decoded.status != Status::done;
}

// Returns how many of the units were encoded: all but a high surrogate at the end, or those before a loss to stop at.
std::size_t Transcoder::encodePiece(std::u16string_view units, bool last) {
    for (std::size_t at = 0; at < units.size();) {
        vynulib::Progress const done =
            vynulib::encode(m_to, units.substr(at), m_bytes.data() + m_filled, m_bytes.size() - m_filled, last);
        at += done.read;
        m_filled += done.written;
        if (done.status == Status::done)
            return at;
        if (done.status == Status::roomFull) {
            flush();
            continue;
        }
        if (m_losses.count++ == 0)
            noteFirst(m_to, sourceOf(at, done.length), m_line + countLines(units.substr(0, at)));
        if (m_losses.stopped)
            return at;
        if (m_onError == OnError::escape)
            append(vynulib::encode(m_to, units.substr(at, done.length), OnError::escape));
        else
            append(m_replacement);
        at += done.length;
    }
    return units.size();
}

void Transcoder::pass(std::size_t bytes) {
    m_rest.remove_prefix(bytes);
    m_offset += bytes;
}

// `bytes` are the part of m_rest that is lost.
void Transcoder::noteFirst(VynCharSet lackedBy, std::string_view bytes, std::size_t line) {
    auto const before = static_cast<std::size_t>(bytes.data() - m_rest.data());
    m_losses = {1, m_onError == OnError::stop, line, m_offset + before, std::string(bytes), lackedBy};
}

// The part of m_rest that the `count` units from `unit` were decoded from.
std::string_view Transcoder::sourceOf(std::size_t unit, std::size_t count) const {
    std::string_view const source = m_rest.substr(bytesOf(unit, m_rest));
    return source.substr(0, bytesOf(count, source));
}

// The bytes at the beginning of `source` that decode to `units` units.
std::size_t Transcoder::bytesOf(std::size_t units, std::string_view source) const {
    std::vector<char16_t> decoded(units + 1);
    return vynulib::decode(m_from, source, decoded.data(), units, m_ended).read;
}

void Transcoder::append(std::string_view bytes) {
    if (m_bytes.size() - m_filled < bytes.size())
        flush();
    m_filled += bytes.copy(m_bytes.data() + m_filled, bytes.size());
}

void Transcoder::flush() {
    m_output.write({m_bytes.data(), m_filled});
    m_filled = 0;
}

} // namespace vynconv
