#pragma once

#include "tests/support/FailingAllocation.h"

#include <vynulib/VynUString.h>

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

/// A string of exactly these units, zero units included, in a capacity that just fits.
inline VynUString makeString(std::u16string_view text) {
    return text;
}

/// All units of a string.
inline std::u16string textOf(VynUString const& string) {
    return std::u16string(string.view());
}

/// Of the leak checker, where there is one.
extern "C" void __lsan_ignore_object(void const* object) __attribute__((weak));

/// Tells the leak checker that `assign` is about to be called, which lets go of the string's heap array on purpose.
inline void expectAbandoned(VynUString const& string) {
    if (__lsan_ignore_object && string.capacity() > VynUString().capacity())
        __lsan_ignore_object(string.data());
}

/// What became of an action: "done", or the kind and the text of its exception.
template <class Action>
std::string outcomeOf(Action action) {
    try {
        action();
    } catch (std::out_of_range const& e) {
        return std::string("out_of_range: ") + e.what();
    } catch (std::length_error const& e) {
        return std::string("length_error: ") + e.what();
    }
    return "done";
}

/// Runs `action` with no allocation to spend, with one, with two and so on until it has enough, and `check` after each
/// failure.
template <class Action, class Check>
void exhaustMemory(Action action, Check check) {
    for (unsigned allocations = 0;; ++allocations) {
        allocationsLeft = allocations;
        try {
            action();
            allocationsLeft = unlimitedAllocations;
            return;
        } catch (std::bad_alloc const&) {
            allocationsLeft = unlimitedAllocations;
            check();
        }
    }
}
