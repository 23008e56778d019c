#pragma once

#include "converters/kernels/Blocks.h"

namespace vyn {
namespace {

/// Zero elements of the block at `at`: bits for each of their bytes.
inline std::uint64_t zerosAt(unsigned char const* at) {
    ByteBlock block;
    loadBlock(block, at);
    return signsOf(block, [](Bytes vector) { return bytes(vector == 0); });
}
inline std::uint64_t zerosAt(unsigned short const* at) {
    UnitBlock block;
    loadBlock(block, at);
    ByteBlock zeros;
    for (long i = 0; i < blockVectors; ++i)
        zeros[i] = bytes(units(block[i] == 0));
    return signsOf(zeros);
}

/// The elements before the first zero element of `text`, at most `most`. Two blocks at once if they lie within a page, as
/// short texts then take no turns by their address; aligned blocks otherwise, and all that follow: where one element of them
/// is readable, all are.
template <class Element>
[[gnu::flatten]] unsigned long textLength(Element const* text, unsigned long most) {
    constexpr unsigned long size = blockBytes / sizeof *text;
    unsigned long const before = reinterpret_cast<std::uintptr_t>(text) % blockBytes / sizeof *text;
    auto const endAt = [&](unsigned long length, std::uint64_t zeros) {
        length += static_cast<unsigned>(__builtin_ctzll(zeros)) / sizeof *text;
        return length < most ? length : most;
    };
    unsigned long length = size - before; // known so far
    if (isWithinPage(text, 2 * blockBytes)) {
        if (std::uint64_t const zeros = zerosAt(text))
            return endAt(0, zeros);
        if (std::uint64_t const zeros = zerosAt(text + size))
            return endAt(size, zeros);
        length += size;
    } else if (std::uint64_t const zeros = zerosAt(text - before) >> before * sizeof *text) {
        return endAt(0, zeros);
    }
    for (; length < most; length += size)
        if (std::uint64_t const zeros = zerosAt(text + length))
            return endAt(length, zeros);
    return most;
}

} // namespace
} // namespace vyn
