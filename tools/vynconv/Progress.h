#pragma once

#include <chrono>
#include <cstddef>

namespace vynconv {

class Input;

/// Shows how far the conversion of an input has come, if it takes long, on standard error where that is a terminal.
class Progress {
public:
    /// The conversion begins now. `input` has to live as long as this.
    explicit Progress(Input const& input);
    ~Progress() { clear(); }
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    /// `bytesRead` counts from the beginning of the input.
    void show(std::size_t bytesRead);

    /// Removes the line, so that a message can stand there.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    Input const& m_input;
    bool m_terminal;
    bool m_shown = false;
    Clock::time_point m_begin = Clock::now();
    Clock::time_point m_next; // not shown before
};

} // namespace vynconv
