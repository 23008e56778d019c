#pragma once

#include "fuzz/Require.h"
#include "tests/support/GuardedBuffer.h"

#include <sanitizer/asan_interface.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

/// Memory for exactly so many elements. An inaccessible page is behind it, or, where the number is odd, before it; the bytes
/// on its other side must not be written, and under a sanitizer not read.
template <class Element>
class Exact {
public:
    explicit Exact(std::size_t count) : m_size(count * sizeof(Element)), m_isAtBegin(count % 2 != 0) {
        require(m_size + watchedSize <= capacity, "a buffer is large enough", m_size);
        if (spare.empty())
            spare.push_back(std::make_unique<GuardedBuffer>(capacity));
        m_memory = std::move(spare.back());
        spare.pop_back();
        std::fill_n(watched(), watchedSize, untouched);
        ASAN_POISON_MEMORY_REGION(watched(), watchedSize);
    }
    Exact(Exact const&) = delete;
    Exact& operator=(Exact const&) = delete;
    ~Exact() {
        ASAN_UNPOISON_MEMORY_REGION(watched(), watchedSize);
        require(std::count(watched(), watched() + watchedSize, untouched) == watchedSize, "nothing else is written");
        spare.push_back(std::move(m_memory));
    }

    Element* get() const { return reinterpret_cast<Element*>(begin()); }
    Element& operator[](std::size_t at) const { return get()[at]; }

private:
    static constexpr std::size_t capacity = 1 << 20;
    static constexpr std::ptrdiff_t watchedSize = 16;
    static constexpr unsigned char untouched = 0xA5;

    unsigned char* begin() const { return m_isAtBegin ? m_memory->begin() : m_memory->end() - m_size; }
    unsigned char* watched() const { return m_isAtBegin ? begin() + m_size : begin() - watchedSize; }

    inline static std::vector<std::unique_ptr<GuardedBuffer>> spare;

    std::size_t m_size;
    bool m_isAtBegin;
    std::unique_ptr<GuardedBuffer> m_memory;
};
