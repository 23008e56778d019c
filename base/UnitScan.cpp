#include "base/UnitScan.h"

#include "base/CheckedReads.h"

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
    unsigned short const* at = text;
    unsigned long left = maxUnits;
    bool const byBlocks = !readsAreChecked();
    for (; left != 0 && (!byBlocks || reinterpret_cast<std::uintptr_t>(at) % readableStretch != 0); ++at, --left)
        if (*at == 0)
            return maxUnits - left;
    for (; left >= blockUnits && !alignedBlockHasZero(at); left -= blockUnits)
        at += blockUnits;
    for (; left != 0 && *at != 0; --left)
        ++at;
    return maxUnits - left;
}

} // namespace vyn
