#include "converters/kernels/levels/VectorAvx2.h"
// The vectors first: the kernels are written in them.
#include "converters/kernels/levels/Level.h"

constinit vyn::Kernels const vyn::avx2Kernels = kernelsOf("avx2");
