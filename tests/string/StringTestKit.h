#pragma once

#include "tests/support/FailingAllocation.h"

#include <vynulib/VynUString.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

using Text = std::u16string;
using namespace std::string_literals;

inline constexpr unsigned long inlineCapacity = 257, npos = VynUString::npos;

/// A string of exactly these units, zero units included, in a capacity that just fits.
inline VynUString makeString(std::u16string_view text) {
    return text;
}

/// All units of a string.
inline Text textOf(VynUString const& string) {
    return Text(string.view());
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
