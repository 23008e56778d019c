#pragma once

#include <chrono>
#include <cstddef>

namespace vynconv {

class Input;

/// Shows how far a long conversion has come, on standard error where that is a terminal.
class Progress {
public:
    Progress();
    ~Progress() { clear(); }
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    /// `bytesRead` counts from the beginning of `input`.
    void show(Input const& input, std::size_t bytesRead);

    /// Removes the line, so that a message can stand there.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    bool m_terminal;
    bool m_shown = false;
    Clock::time_point m_next; // not shown before
};

} // namespace vynconv
