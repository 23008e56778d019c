#pragma once

#include <vynulib/VynCharSetConverter.h>

#include <span>

namespace vyn {

/// The library's own converters, in the order in which the registry takes them.
std::span<VynCharSetConverter* const> staticConverters();

/// The one that stands in for every set without a converter.
VynCharSetConverter* staticUtf8Converter();

} // namespace vyn
