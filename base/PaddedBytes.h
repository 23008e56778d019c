#pragma once

#include <memory>
#include <new>

namespace vyn {

/// Scratch room for byte text that comes without a terminator: zero bytes stand behind it, enough to end it in every
/// set. Up to a few hundred bytes are on the stack.
class PaddedBytes {
public:
    /// Room for `count` bytes, which the caller fills.
    explicit PaddedBytes(unsigned long count) {
        if (count > ~0UL - padding)
            throw std::bad_array_new_length();
        if (count > localRoom) {
            m_pHeap.reset(new char[count + padding]);
            m_pBytes = m_pHeap.get();
        }
        for (unsigned long i = 0; i < padding; ++i)
            m_pBytes[count + i] = 0;
    }
    PaddedBytes(PaddedBytes const&) = delete;
    PaddedBytes& operator=(PaddedBytes const&) = delete;

    char* data() { return m_pBytes; }

private:
    static constexpr unsigned long padding = 8; // the widest terminator, 4 bytes, behind a value cut to less than 4
    static constexpr unsigned long localRoom = 504;

    char m_aLocal[localRoom + padding];
    std::unique_ptr<char[]> m_pHeap;
    char* m_pBytes = m_aLocal;
};

} // namespace vyn
