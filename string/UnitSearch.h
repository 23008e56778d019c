#pragma once

namespace vyn {

constexpr unsigned long notFound = ~0UL;

/// The index of the first or last `unit` in the `length` units of `text`, or `notFound`.
unsigned long findUnit(unsigned short const* text, unsigned long length, unsigned short unit) noexcept;
unsigned long findLastUnit(unsigned short const* text, unsigned long length, unsigned short unit) noexcept;

/// Where the first or last occurrence of the `patternLength` units of `pattern`, one or more, starts in `text`, or
/// `notFound`. All units are compared, zero units like others. Takes time linear in both lengths, whatever they hold,
/// and no memory.
unsigned long findUnits(unsigned short const* text, unsigned long length, unsigned short const* pattern,
                        unsigned long patternLength) noexcept;
unsigned long findLastUnits(unsigned short const* text, unsigned long length, unsigned short const* pattern,
                            unsigned long patternLength) noexcept;

} // namespace vyn
