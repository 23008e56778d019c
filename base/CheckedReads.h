#pragma once

#include <cstdint>

namespace vyn {

/// Whether something watches each read: memory tagging, valgrind or a sanitizer. Decided when the library is loaded.
extern bool readsAreChecked;

/// The aligned stretch of memory that can be read wherever one byte of it can, as it lies within a page. It holds for
/// the hardware, but not for who watches reads: what is there may belong to another object.
constexpr unsigned long readableStretch = 64;

/// How many elements from `at` on can be read if the first one can.
template <class Element>
unsigned long readableFrom(Element const* at) noexcept {
    if (readsAreChecked)
        return 0;
    return (readableStretch - reinterpret_cast<std::uintptr_t>(at) % readableStretch) / sizeof(Element);
}

} // namespace vyn
