#pragma once

#include <atomic>

/// How many calls of `new` the program and the libraries in it have left before each one fails. A program that links
/// FailingAllocation.cpp.
extern unsigned allocationsLeft;

inline constexpr unsigned unlimitedAllocations = ~0U;

/// Whether each call of `new` takes a while, so that other threads come between.
extern bool allocationsAreSlow;

/// How many blocks of `new` were not deleted so far.
extern std::atomic<long> blocksInUse;
