#pragma once

#include "converters/kernels/CaseMap.h"
#include "converters/kernels/Kernels.h"

// The forms of kernels for texts of units that use no vectors by themselves. Their loops over a block have no branch in
// them, so that compilers use vectors.

namespace vyn {

unsigned long firstUnitByBlocks(unsigned short const* text, unsigned long count, unsigned short unit);
unsigned long lastUnitByBlocks(unsigned short const* text, unsigned long count, unsigned short unit);
unsigned long firstEndsByBlocks(unsigned short const* text, unsigned long count, PatternEnds ends);
unsigned long lastEndsByBlocks(unsigned short const* text, unsigned long count, PatternEnds ends);
unsigned long sameUnitsByBlocks(unsigned short const* a, unsigned short const* b, unsigned long count);
unsigned long sameUnitsNoCaseByBlocks(unsigned short const* a, unsigned short const* b, unsigned long count,
                                      CaseMap const* map);
bool changeAsciiCaseByUnits(unsigned short* text, unsigned long count, AsciiLetters changed);
bool changeCaseByUnits(unsigned short* text, unsigned long count, CaseMap const& map);

} // namespace vyn
