#pragma once

/// While true, every `new` of the program and of the libraries in it fails. A program that links FailingAllocation.cpp.
extern bool memoryIsOut;
