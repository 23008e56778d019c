#pragma once

namespace vyn {

/// The units before the first zero unit of `text`, at most `maxUnits`. Of what lies before `text`, and after that unit or
/// the bound, it reads only what the same aligned stretch holds, and nothing where reads are watched (`readsAreChecked`).
unsigned long unitLength(unsigned short const* text, unsigned long maxUnits) noexcept;

/// The same without vectors, for a `text` at an even address and a bound above 0 where reads are not watched.
unsigned long unitLengthByWords(unsigned short const* text, unsigned long maxUnits);

} // namespace vyn
