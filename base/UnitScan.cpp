#include "base/UnitScan.h"

#include "base/CheckedReads.h"

#include <algorithm>

namespace vyn {
namespace {

constexpr unsigned long blockUnits = readableStretch / sizeof(unsigned short);

// Reads what may lie after the end of the text: an aligned block with a readable unit in it is readable. Only where
// nothing watches reads; the attribute is for the library's own build with a sanitizer.
__attribute__((no_sanitize("address", "thread"))) bool alignedBlockHasZero(unsigned short const* text) noexcept {
    unsigned short zeros = 0; // as wide as a unit, so that compilers use vectors
    for (unsigned long i = 0; i < blockUnits; ++i)
        zeros = static_cast<unsigned short>(zeros | (text[i] == 0 ? 1 : 0));
    return zeros != 0;
}

} // namespace

unsigned long unitLength(unsigned short const* text, unsigned long maxUnits) noexcept {
    auto const address = reinterpret_cast<std::uintptr_t>(text);
    bool const byBlocks = !readsAreChecked && address % sizeof *text == 0;
    unsigned long const head = byBlocks ? std::min(-address % readableStretch / sizeof *text, maxUnits) : maxUnits;
    unsigned long length = 0;
    while (length < head && text[length] != 0)
        ++length;
    if (length < head)
        return length;
    while (maxUnits - length >= blockUnits && !alignedBlockHasZero(text + length))
        length += blockUnits;
    while (length < maxUnits && text[length] != 0)
        ++length;
    return length;
}

} // namespace vyn
