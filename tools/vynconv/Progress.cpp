#include "tools/vynconv/Progress.h"

#include "tools/vynconv/Input.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace vynconv {
namespace {

using namespace std::chrono_literals;

std::string describeTime(double seconds) {
    constexpr double longTime = 100;
    return seconds < longTime ? std::to_string(static_cast<unsigned long>(seconds)) + " s"
                              : std::to_string(static_cast<unsigned long>(seconds / 60)) + " min";
}

// `size` is that of the whole, less than `bytesRead` where it is unknown.
std::string describeProgress(std::size_t bytesRead, std::size_t size, double seconds) {
    constexpr std::size_t mebibyte = 1 << 20;
    double const rate = static_cast<double>(bytesRead) / seconds;
    std::string const speed = std::to_string(static_cast<std::size_t>(rate) / mebibyte) + " MiB/s";
    if (bytesRead == 0 || size < bytesRead)
        return std::to_string(bytesRead / mebibyte) + " MiB, " + speed;
    double const part = static_cast<double>(bytesRead) / static_cast<double>(size);
    return std::to_string(static_cast<unsigned>(100 * part)) + " % of " + std::to_string(size / mebibyte) + " MiB, " +
           speed + ", " + describeTime(static_cast<double>(size - bytesRead) / rate) + " left";
}

} // namespace

Progress::Progress(Input const& input)
    : m_input(input), m_terminal(::isatty(STDERR_FILENO) == 1), m_next(m_begin + 500ms) {}

void Progress::show(std::size_t bytesRead) {
    if (!m_terminal)
        return;
    auto const now = Clock::now();
    if (now < m_next)
        return;
    m_next = now + 200ms;
    m_shown = true;
    double const seconds = std::chrono::duration<double>(now - m_begin).count();
    std::fprintf(stderr, "\r\033[K%s: %s", m_input.name().c_str(),
                 describeProgress(bytesRead, m_input.size(), seconds).c_str());
    std::fflush(stderr);
}

void Progress::clear() {
    if (m_shown)
        std::fputs("\r\033[K", stderr);
    m_shown = false;
}

} // namespace vynconv
