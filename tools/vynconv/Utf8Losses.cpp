#include "tools/vynconv/Utf8Losses.h"

#include <cstdint>
#include <cstring>

namespace vynconv {
namespace {

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

bool isAscii8(unsigned char const* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return (word & 0x8080808080808080) == 0;
}

bool continues(unsigned char const* lead, unsigned sequenceLength) {
    for (unsigned i = 1; i < sequenceLength; ++i)
        if (!isContinuation(lead[i]))
            return false;
    return true;
}

// Of a whole four-byte sequence: the five bits that decide are those above the lowest sixteen of the value.
bool isSupplementary(unsigned char const* lead) {
    unsigned const plane = (lead[0] & 0x0FU) << 2 | (lead[1] & 0x30U) >> 4;
    return plane >= 1 && plane <= 16;
}

} // namespace

unsigned utf8SequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead < 0xC0)
        return 0;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

void findUtf8Losses(unsigned char const* bytes, std::size_t size, std::size_t unit, std::vector<Loss>& losses) {
    for (std::size_t i = 0; i < size;) {
        if (size - i >= 8 && isAscii8(bytes + i)) {
            i += 8;
            unit += 8;
            continue;
        }
        unsigned const length = utf8SequenceLength(bytes[i]);
        if (length == 0) {
            losses.push_back({unit, 0});
            ++i;
        } else if (length > size - i || !continues(bytes + i, length)) {
            losses.push_back({unit++, 1});
            ++i; // the decoder reads the byte behind the lead afresh
        } else {
            std::size_t const units = length == 4 ? 2 : 1;
            if (length == 4 && !isSupplementary(bytes + i))
                losses.push_back({unit, units});
            unit += units;
            i += length;
        }
    }
}

} // namespace vynconv
