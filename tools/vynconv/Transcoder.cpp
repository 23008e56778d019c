#include "tools/vynconv/Transcoder.h"

#include "base/Surrogates.h"
#include "tools/vynconv/Input.h"
#include "tools/vynconv/Output.h"
#include "tools/vynconv/Progress.h"

#include <algorithm>
#include <cstring>

namespace vynconv {
namespace {

constexpr std::size_t chunkBytes = 256UL * 1024;

std::size_t countLines(Text const& text, std::size_t length) {
    auto const begin = text.units.begin();
    return static_cast<std::size_t>(std::count(begin, begin + static_cast<std::ptrdiff_t>(length), u'\n'));
}

} // namespace

Transcoder::Transcoder(VynCharSet from, VynCharSet to, ILLCHAR_OPTYPE onError)
    : m_decoder(from), m_encoder(to, onError), m_stopAtLoss(onError == ILLCHAR_STOP), m_source(chunkBytes + 1) {}

Report Transcoder::convert(Input& input, Output& output, Progress& progress) {
    m_text.length = 0;
    m_line = 1;
    m_report = {};
    std::size_t carried = 0;
    std::size_t bytesRead = 0;
    for (bool last = false; !last && !m_report.stopped;) {
        std::size_t const got = input.read(m_source.data() + carried, chunkBytes - carried);
        std::size_t const filled = carried + got;
        last = got == 0;
        std::size_t const size =
            last ? filled : m_decoder.wholeCharacters(m_source.data(), carried, filled, filled == chunkBytes);
        convertChunk(size, last, output);
        carried = filled - size;
        std::memmove(m_source.data(), m_source.data() + size, carried);
        bytesRead += got;
        progress.show(input, bytesRead);
    }
    return m_report;
}

void Transcoder::convertChunk(std::size_t size, bool last, Output& output) {
    m_text.losses.clear();
    m_decoder.decode(m_source.data(), size, m_text);
    std::size_t length = m_text.length;
    if (!last && length != 0 && vyn::isHighSurrogate(m_text.units[length - 1]))
        --length;

    bool const clean = m_encoder.encode(m_text.units.data(), length);
    if (!clean || !m_text.losses.empty()) {
        std::size_t const first = countLosses(length);
        if (m_stopAtLoss) {
            m_report.stopped = true;
            m_report.lostCharacters = 1;
            m_encoder.encode(m_text.units.data(), first);
        }
    }
    output.write(m_encoder.bytes(), m_encoder.size());

    if (m_report.lostCharacters == 0)
        m_line += countLines(m_text, length);
    if (length < m_text.length)
        m_text.units[0] = m_text.units[length];
    m_text.length -= length;
}

// Returns where the first lost character stands. What decoding lost is not counted again because its U+FFFD can't be
// encoded either.
std::size_t Transcoder::countLosses(std::size_t length) {
    std::size_t first = length;
    auto const note = [&](std::size_t unit) {
        first = std::min(first, unit);
        if (m_report.lostCharacters++ == 0)
            m_report.firstLine = m_line + countLines(m_text, first);
    };
    auto loss = m_text.losses.begin();
    for (std::size_t i = 0; i < length || loss != m_text.losses.end();) {
        if (loss != m_text.losses.end() && (loss->unit <= i || i >= length)) {
            note(loss->unit);
            i = std::max(i, loss->unit + loss->units);
            ++loss;
            continue;
        }
        unsigned short const* const unit = &m_text.units[i];
        bool const pair = i + 1 < length && vyn::isHighSurrogate(unit[0]) && vyn::isLowSurrogate(unit[1]);
        if (!m_encoder.holds(unit, pair ? 2 : 1))
            note(i);
        i += pair ? 2 : 1;
    }
    return first;
}

} // namespace vynconv
