#include "tests/support/FailingAllocation.h"

#include <unistd.h>

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
    if (void* const memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
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
