#include "converters/kernels/TextScan.h"

#include "base/Words.h"

#include <algorithm>

namespace vyn {
namespace {

constexpr unsigned long wordUnits = 4;
constexpr unsigned long blockUnits = readableStretch / sizeof(unsigned short);

bool blockHasZero(unsigned short const* text) noexcept {
    unsigned short zeros = 0; // as wide as a unit, so that compilers use vectors
    for (unsigned long i = 0; i < blockUnits; ++i)
        zeros = static_cast<unsigned short>(zeros | (text[i] == 0 ? 1 : 0));
    return zeros != 0;
}

} // namespace

/// Reads aligned words and blocks, which may hold what lies before the text and after its end: one with a unit of the
/// text in it is readable.
unsigned long unitLengthByWords(unsigned short const* text, unsigned long maxUnits) {
    auto const address = reinterpret_cast<std::uintptr_t>(text);
    unsigned long const before = address % sizeof(std::uint64_t) / sizeof *text; // units in front of the text
    std::uint64_t word = wordAt(text - before) | ((std::uint64_t{1} << 16 * before) - 1);
    unsigned long length = 0 - before; // of the text that lies before the word
    while (!hasZeroUnit(word)) {
        length += wordUnits;
        if ((address + sizeof *text * length) % readableStretch == 0)
            while (length < maxUnits && !blockHasZero(text + length))
                length += blockUnits;
        if (length >= maxUnits)
            return maxUnits;
        word = wordAt(text + length);
    }
    return std::min(length + firstZeroUnit(word), maxUnits);
}

unsigned long unitLengthByUnits(unsigned short const* text, unsigned long maxUnits) {
    unsigned long length = 0;
    while (length < maxUnits && text[length] != 0)
        ++length;
    return length;
}

} // namespace vyn
