#pragma once

#include <cstddef>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

/// Memory between two inaccessible pages: an access before its first or after its last byte faults.
class GuardedBuffer {
public:
    /// Room for at least `size` bytes, in whole pages.
    explicit GuardedBuffer(std::size_t size) {
        auto const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        m_size = (size + page - 1) / page * page;
        m_mappedSize = m_size + 2 * page;
        m_mapping = mmap(nullptr, m_mappedSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m_mapping == MAP_FAILED)
            throw std::bad_alloc();
        m_begin = static_cast<unsigned char*>(m_mapping) + page;
        if (mprotect(m_begin, m_size, PROT_READ | PROT_WRITE) != 0) {
            munmap(m_mapping, m_mappedSize);
            throw std::bad_alloc();
        }
    }
    GuardedBuffer(GuardedBuffer const&) = delete;
    GuardedBuffer& operator=(GuardedBuffer const&) = delete;
    ~GuardedBuffer() { munmap(m_mapping, m_mappedSize); }

    unsigned char* begin() const { return m_begin; }
    unsigned char* end() const { return m_begin + m_size; }

private:
    std::size_t m_size;
    std::size_t m_mappedSize;
    void* m_mapping;
    unsigned char* m_begin;
};
