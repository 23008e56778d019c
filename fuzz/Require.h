#pragma once

#include <cstdlib>
#include <iostream>

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
