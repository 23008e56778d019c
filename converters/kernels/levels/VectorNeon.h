#pragma once

#include <arm_neon.h>
#include <cstdint>

// The operations on vectors that kernels are written in, 16 bytes wide. What a kernel does by operators needs no name here.

namespace vyn {
namespace {

inline constexpr long vectorBytes = 16;

using Bytes = uint8x16_t;
using SignedBytes = int8x16_t;
using Units = uint16x8_t;
using Lane = Bytes;

inline Bytes bytes(auto vector) {
    return reinterpret_cast<Bytes>(vector);
}
inline Units units(auto vector) {
    return reinterpret_cast<Units>(vector);
}

inline Bytes load(void const* at) {
    return vld1q_u8(static_cast<unsigned char const*>(at));
}
/// For a vector that is used twice: compilers would load it twice.
inline Bytes loadOnce(void const* at) {
    Bytes vector = load(at);
    asm("" : "+w"(vector));
    return vector;
}
inline void store(void* at, auto vector) {
    vst1q_u8(static_cast<unsigned char*>(at), bytes(vector));
}
inline Lane loadLane(void const* at) {
    return load(at);
}
inline void storeLane(void* at, Lane lane) {
    store(at, lane);
}

/// The same 16 bytes in each lane.
inline Bytes loadRow(void const* at) {
    return load(at);
}

/// Within each lane: the byte of `row` whose number stands in the four lowest bits of `index`, or 0 where that has its
/// highest bit set.
inline Bytes lookUp(Bytes row, Bytes index) {
    return vqtbl1q_u8(row, index & 0x8F); // which gives 0 for every number beyond the row
}

/// The differences, 0 where they would be negative.
inline Bytes subtractSaturated(Bytes a, Bytes b) {
    return vqsubq_u8(a, b);
}

/// Bytes of `yes` where `choice` has its highest bit set, of `no` elsewhere.
inline Bytes select(Bytes choice, Bytes yes, Bytes no) {
    return vbslq_u8(bytes(vshrq_n_s8(reinterpret_cast<SignedBytes>(choice), 7)), yes, no);
}

/// The vector that begins `Count` bytes before `vector`, in a text where `before` stands in front of it.
template <int Count>
Bytes shiftedIn(Bytes vector, Bytes before) {
    return vextq_u8(before, vector, 16 - Count);
}

/// The vector that begins `Count` bytes after `vector`, in a text where `after` stands behind it.
template <int Count>
Bytes shiftedOut(Bytes vector, Bytes after) {
    return vextq_u8(vector, after, Count);
}

/// Within each lane, the bytes of both vectors in turns: of the first and of the second half.
inline Units interleaveLow(Bytes even, Bytes odd) {
    return units(vzip1q_u8(even, odd));
}
inline Units interleaveHigh(Bytes even, Bytes odd) {
    return units(vzip2q_u8(even, odd));
}
inline Bytes interleaveUnitsLow(Units even, Units odd) {
    return bytes(vzip1q_u16(even, odd));
}
inline Bytes interleaveUnitsHigh(Units even, Units odd) {
    return bytes(vzip2q_u16(even, odd));
}

template <int Index>
Lane laneOf(auto vector) {
    static_assert(Index == 0);
    return bytes(vector);
}

/// Bytes as units: of the first and of the second half of the vector.
inline Units widenLow(Bytes vector) {
    return vmovl_u8(vget_low_u8(vector));
}
inline Units widenHigh(Bytes vector) {
    return vmovl_high_u8(vector);
}

/// Units below 0x100, in their order, as bytes.
inline Bytes narrow(Units first, Units second) {
    return vuzp1q_u8(bytes(first), bytes(second));
}

inline bool isZero(auto vector) {
    return vmaxvq_u8(bytes(vector)) == 0;
}

/// The highest bits of the bytes of at most 64, that of the first one lowest.
template <unsigned Count>
std::uint64_t signsOf(Bytes const (&vectors)[Count]) {
    constexpr Bytes bits = {1, 2, 4, 8, 16, 32, 64, 128, 1, 2, 4, 8, 16, 32, 64, 128};
    Bytes signs[4] = {};
    for (unsigned i = 0; i < Count; ++i)
        signs[i] = bytes(vshrq_n_s8(reinterpret_cast<SignedBytes>(vectors[i]), 7)) & bits;
    Bytes const halves = vpaddq_u8(vpaddq_u8(signs[0], signs[1]), vpaddq_u8(signs[2], signs[3]));
    return vgetq_lane_u64(vreinterpretq_u64_u8(vpaddq_u8(halves, halves)), 0);
}

} // namespace
} // namespace vyn
