#pragma once

/// @file
/// What the library says of itself.

#include <vynulib/VynExport.h>

#include <string_view>

/// The major version of these headers, for the preprocessor: another one breaks compiled programs.
#define VYNULIB_VERSION_MAJOR 1
/// Their minor version: a later one adds to the interface.
#define VYNULIB_VERSION_MINOR 0
/// Their patch: another one leaves the interface alone.
#define VYNULIB_VERSION_PATCH 0

namespace vynulib {

/// The version of the library that runs, which may be later than that of the headers: "1.0.0". It has static lifetime.
/// Any thread may ask.
VYNULIB_API std::string_view version() noexcept;

/// The instruction set that the library uses for long texts: "avx2", "sse4", "neon" or "portable", chosen when it is
/// loaded. The variable VYNULIB_LEVEL in the environment names a lower one; what it names is ignored where the machine
/// lacks it. Results are the same with all. It has static lifetime. Any thread may ask.
VYNULIB_API std::string_view instructionSet() noexcept;

} // namespace vynulib
