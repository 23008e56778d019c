#include "converters/kernels/SingleByteRows.h"

#include <algorithm>
#include <iterator>

namespace vyn {
namespace {

constexpr unsigned asciiEnd = 0x80;

/// The first of 128 units of which most are in the set.
unsigned short findHome(unsigned short const (&unitOf)[256]) {
    unsigned char counts[0x10000 / SingleByteRows::count] = {};
    for (unsigned byte = asciiEnd; byte < 256; ++byte)
        if (unitOf[byte] >= asciiEnd)
            ++counts[unitOf[byte] / SingleByteRows::count];
    auto const most = std::max_element(std::begin(counts), std::end(counts)) - counts;
    return static_cast<unsigned short>(most * SingleByteRows::count);
}

} // namespace

void SingleByteRows::fill(unsigned short const (&unitOf)[256], LookupTable<unsigned char> const& reverse) {
    for (unsigned unit = 0; unit < std::size(byteOf); ++unit)
        byteOf[unit] = reverse.lookup(static_cast<unsigned short>(unit));
    for (unsigned character = 1; character < asciiEnd; ++character) {
        if (unitOf[character] != character)
            oddBytes.insert(character);
        if (byteOf[character] != character)
            oddUnits.insert(character);
    }
    isLatin1 = true;
    for (unsigned byte = 1; byte < 256; ++byte)
        isLatin1 &= unitOf[byte] == byte && byteOf[byte] == byte;
    for (unsigned i = 0; i < count; ++i) {
        lowOfUnit[i] = static_cast<unsigned char>(unitOf[asciiEnd + i]);
        highOfUnit[i] = static_cast<unsigned char>(unitOf[asciiEnd + i] >> 8);
    }
    home = findHome(unitOf);
    std::copy_n(byteOf + home, count, byteOfHome);
}

} // namespace vyn
