#include "tests/support/FailingAllocation.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <new>

unsigned allocationsLeft = unlimitedAllocations;
bool allocationsAreSlow = false;
std::atomic<long> blocksInUse = 0;

static constexpr std::size_t largest = 1UL << 40; // a request of more would end a program that is sanitized

// Arrays on their own too: a sanitizer's operator for them does not come here.
void* operator new(std::size_t size) {
    if (allocationsAreSlow)
        usleep(10);
    if (allocationsLeft == 0 || size > largest)
        throw std::bad_alloc();
    if (allocationsLeft != unlimitedAllocations)
        --allocationsLeft;
    void* const memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    // No zeros, not even behind it, so that what is read before it is written shows, and what is read too far.
    std::fill_n(static_cast<unsigned char*>(memory), malloc_usable_size(memory), static_cast<unsigned char>(0xA5));
    blocksInUse.fetch_add(1, std::memory_order_relaxed);
    return memory;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* memory) noexcept {
    if (memory)
        blocksInUse.fetch_sub(1, std::memory_order_relaxed);
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    operator delete(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    operator delete(memory);
}
