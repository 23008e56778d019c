#pragma once

#include <vynulib/VynCharSet.h>

namespace vyn {

/// The set that strict conversion uses for `cs`: the default set for `VYNCS_OS_DEFAULT`, otherwise `cs` itself. Throws
/// `std::invalid_argument` where that set is not served.
VynCharSet resolved(VynCharSet cs);

} // namespace vyn
