#pragma once

#include <memory>

namespace vyn {

/// UTF-16 text between two conversions: on the stack where it is short, otherwise on the heap.
class ScratchUnits {
public:
    /// Room for `units` and a terminator, not initialised. Throws `std::bad_alloc`.
    explicit ScratchUnits(unsigned long units) {
        if (units >= shortUnits)
            m_long.reset(new unsigned short[units + 1]);
    }

    unsigned short* data() { return m_long ? m_long.get() : m_short; }

private:
    static constexpr unsigned long shortUnits = 2048;

    std::unique_ptr<unsigned short[]> m_long;
    unsigned short m_short[shortUnits];
};

} // namespace vyn
