#include "tests/support/FailingAllocation.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <new>

unsigned allocationsLeft = unlimitedAllocations;
bool allocationsAreSlow = false;

// Arrays on their own too: a sanitizer's operator for them does not come here.
void* operator new(std::size_t size) {
    if (allocationsAreSlow)
        usleep(10);
    if (allocationsLeft == 0)
        throw std::bad_alloc();
    if (allocationsLeft != unlimitedAllocations)
        --allocationsLeft;
    void* const memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    // No zeros, not even behind it, so that what is read before it is written shows, and what is read too far.
    std::fill_n(static_cast<unsigned char*>(memory), malloc_usable_size(memory), static_cast<unsigned char>(0xA5));
    return memory;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
