#pragma once

#include <vynulib/VynCharSet.h>

namespace vyn {

/// Whether strict conversion serves the set, which is whether the table of names has a row for it. The default set's
/// number is not one.
bool isServed(VynCharSet cs);

} // namespace vyn
