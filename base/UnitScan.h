#pragma once

namespace vyn {

/// The units before the first zero unit of `text`, at most `maxUnits`. Reads no unit behind either.
unsigned long unitLength(unsigned short const* text, unsigned long maxUnits) noexcept;

} // namespace vyn
