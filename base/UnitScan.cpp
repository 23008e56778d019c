#include "base/UnitScan.h"

#include <cstdint>

namespace vyn {
namespace {

constexpr unsigned long blockUnits = 32;
constexpr unsigned long blockBytes = blockUnits * sizeof(unsigned short);

// An aligned block never crosses a page, so one with a readable unit in it is readable, which no sanitizer can know.
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
    for (; left != 0 && reinterpret_cast<std::uintptr_t>(at) % blockBytes != 0; ++at, --left)
        if (*at == 0)
            return maxUnits - left;
    for (; left >= blockUnits && !alignedBlockHasZero(at); left -= blockUnits)
        at += blockUnits;
    for (; left != 0 && *at != 0; --left)
        ++at;
    return maxUnits - left;
}

} // namespace vyn
