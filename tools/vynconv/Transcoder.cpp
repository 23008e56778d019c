#include "tools/vynconv/Transcoder.h"

#include "tools/vynconv/Input.h"
#include "tools/vynconv/Output.h"
#include "tools/vynconv/Progress.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace vynconv {
namespace {

using vynulib::OnError;
using vynulib::Status;

// Both stay in the second-level cache.
constexpr std::size_t sourceBytes = 256UL * 1024;
constexpr std::size_t outputBytes = 64UL * 1024;

template <class Element>
std::size_t countElements(std::string_view text, std::string_view sought) {
    Element wanted;
    std::memcpy(&wanted, sought.data(), sizeof wanted);
    std::size_t count = 0;
    for (std::size_t at = 0; at + sizeof(Element) <= text.size(); at += sizeof(Element)) {
        Element element;
        std::memcpy(&element, text.data() + at, sizeof element);
        count += element == wanted ? 1 : 0;
    }
    return count;
}

/// The ends of lines in a text in the set.
std::size_t countLines(VynCharSet cs, std::string_view text) {
    std::string const end = vynulib::encode(cs, u"\n");
    switch (end.size()) {
    case sizeof(std::uint32_t):
        return countElements<std::uint32_t>(text, end);
    case sizeof(std::uint16_t):
        return countElements<std::uint16_t>(text, end);
    default:
        return countElements<char>(text, end);
    }
}

} // namespace

Transcoder::Transcoder(InputSet from, VynCharSet to, OnError onError, Output& output)
    : m_fromNamed(from), m_to(to), m_onError(onError), m_output(output), m_source(sourceBytes), m_bytes(outputBytes),
      m_from(from.cs) {}

Losses Transcoder::convert(Input& input, Progress& progress, TellLoss const& tell) {
    m_rest = {};
    m_ended = false;
    m_offset = 0;
    m_line = 1;
    m_losses = {};
    skipMark(input);
    for (;;) {
        while (convertPiece(tell)) {
        }
        progress.show(m_offset);
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
bool Transcoder::convertPiece(TellLoss const& tell) {
    vynulib::Report report;
    vynulib::Progress const done =
        vynulib::transcode(m_from, m_to, m_rest, m_bytes.data(), m_bytes.size(), m_ended, m_onError, &report);
    m_output.write({m_bytes.data(), done.written});
    if (tell || m_losses.count == 0)
        findLosses(report, done.read, tell);
    m_losses.count += report.losses;
    m_losses.stopped = done.status == Status::unconvertible;
    pass(done.read);
    return done.status == Status::roomFull;
}

// Of what is read: all losses if they are to be told, otherwise the first. Follows the lines on the way.
void Transcoder::findLosses(vynulib::Report const& report, std::size_t read, TellLoss const& tell) {
    std::size_t counted = 0; // up to where ends of lines are
    std::size_t at = report.firstLoss;
    for (std::size_t found = 0; found != (tell ? report.losses : std::min(report.losses, std::size_t{1})); ++found) {
        if (found != 0)
            at = nextLoss(at);
        m_line += countLines(m_from, m_rest.substr(counted, at - counted));
        counted = at;
        Loss const loss = lossAt(at);
        at += loss.bytes.size();
        if (tell)
            tell(loss);
        if (m_losses.count + found == 0)
            m_losses.first = loss;
    }
    m_line += countLines(m_from, m_rest.substr(counted, read - counted));
}

void Transcoder::pass(std::size_t bytes) {
    m_rest.remove_prefix(bytes);
    m_offset += bytes;
}

Loss Transcoder::lossAt(std::size_t position) {
    std::string_view const source = m_rest.substr(position);
    vynulib::Progress const lost = vynulib::transcode(m_from, m_to, source, m_bytes.data(), m_bytes.size(), m_ended);
    char16_t units[2];
    vynulib::Progress const decoded = vynulib::decode(m_from, source, units, std::size(units), m_ended);
    return {.line = m_line,
            .offset = m_offset + position,
            .bytes = std::string(source.substr(0, lost.length)),
            .lackedBy = decoded.written == 0 ? m_from : m_to};
}

// What comes from `position` on is converted once more.
std::size_t Transcoder::nextLoss(std::size_t position) {
    vynulib::Progress done;
    do {
        done = vynulib::transcode(m_from, m_to, m_rest.substr(position), m_bytes.data(), m_bytes.size(), m_ended);
        position += done.read;
    } while (done.status == Status::roomFull);
    return position;
}

} // namespace vynconv
