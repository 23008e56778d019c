#include "converters/kernels/levels/VectorSse4.h"
// The vectors first: the kernels are written in them.
#include "converters/kernels/levels/Level.h"

constinit vyn::Kernels const vyn::sse4Kernels = kernelsOf("sse4");
