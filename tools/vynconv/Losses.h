#pragma once

#include <vynulib/VynCharSet.h>

#include <cstddef>
#include <string>

namespace vynconv {

/// A character that could not be converted, or a sequence that is none.
struct Loss {
    std::size_t line = 0;             ///< From 1.
    std::size_t offset = 0;           ///< Bytes in the file, from 0.
    std::string bytes;                ///< As they stand in the file.
    VynCharSet lackedBy = VYNCS_UTF8; ///< The set that does not have it: that of the input or that of the output.
};

/// What one input lost.
struct Losses {
    std::size_t count = 0;
    bool stopped = false; ///< The output ends before the first.
    Loss first;
};

} // namespace vynconv
