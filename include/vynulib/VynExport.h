#pragma once

/// @file
/// What is exported.

/// Marks what the shared library exports; all else is hidden in it. Linked statically (VYNULIB_STATIC, which the CMake and
/// pkg-config packages of a static library define), the interface stays within the program or library that it is linked to.
#ifdef VYNULIB_STATIC
#define VYNULIB_API
#else
#define VYNULIB_API __attribute__((visibility("default")))
#endif
