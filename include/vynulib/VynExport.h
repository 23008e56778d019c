#pragma once

/// @file
/// What is exported.

/// Marks what the shared library exports; all else is hidden in it.
#define VYNULIB_API __attribute__((visibility("default")))
