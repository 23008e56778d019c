#pragma once

#include <vynulib/VynCharSet.h>

#include <string>

namespace vynconv {

/// The set that `text` names: by its name, by its name without "VYNCS_", either in any case, or by its number.
/// The default set is given as the set that it stands for. Throws `UsageFailure` for a set that is unknown or that has
/// no converter.
VynCharSet parseCharacterSet(std::string const& text);

/// The sets that can be converted, one "number name" line each, by number.
std::string listCharacterSets();

/// The default set and the locale text that it was taken from, as one line.
std::string describeDefaultSet();

} // namespace vynconv
