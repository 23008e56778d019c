#include "tools/vynconv/Progress.h"

#include "tools/vynconv/Input.h"

#include <unistd.h>

#include <cstdio>

namespace vynconv {

using namespace std::chrono_literals;

Progress::Progress() : m_terminal(::isatty(STDERR_FILENO) == 1), m_next(Clock::now() + 500ms) {}

void Progress::show(Input const& input, std::size_t bytesRead) {
    if (!m_terminal || Clock::now() < m_next)
        return;
    m_next = Clock::now() + 200ms;
    m_shown = true;
    constexpr std::size_t mebibyte = 1 << 20;
    std::fprintf(stderr, "\r\033[K%s: %zu MiB", input.name().c_str(), bytesRead / mebibyte);
    if (input.size() >= bytesRead)
        std::fprintf(stderr, " of %zu", input.size() / mebibyte);
    std::fflush(stderr);
}

void Progress::clear() {
    if (m_shown)
        std::fputs("\r\033[K", stderr);
    m_shown = false;
}

} // namespace vynconv
