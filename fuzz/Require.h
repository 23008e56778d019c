#pragma once

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string_view>

/// Ends the process, so that the fuzzer keeps its input, where what must hold does not. `details` are printed as well.
template <class... Details>
void require(bool holds, char const* what, Details const&... details) {
    if (holds) [[likely]]
        return;
    std::cerr << "does not hold: " << what;
    ((std::cerr << ", " << details), ...);
    std::cerr << std::endl;
    std::abort();
}

/// Makes a change that has to be refused as `std::out_of_range` unless it is `allowed`; returns that.
template <class Change>
bool changes(bool allowed, std::string_view message, Change change) {
    try {
        change();
        require(allowed, "a change has to be refused", message);
    } catch (std::out_of_range const& e) {
        require(!allowed && e.what() == message, "a change must not be refused", e.what());
    }
    return allowed;
}
