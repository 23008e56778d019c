#include "converters/kernels/levels/VectorNeon.h"
// The vectors first: the kernels are written in them.
#include "converters/kernels/levels/Level.h"

constinit vyn::Kernels const vyn::neonKernels = kernelsOf("neon");
