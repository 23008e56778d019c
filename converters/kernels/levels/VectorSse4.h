#pragma once

#include <cstdint>
#include <nmmintrin.h>

// The operations on vectors that kernels are written in, 16 bytes wide. What a kernel does by operators needs no name here.

namespace vyn {
namespace {

static_assert(__SSE4_2__ && __POPCNT__, "to be compiled for these");
#if defined(__AVX__)
static_assert(false, "to be compiled for no more");
#endif

inline constexpr long vectorBytes = 16;

using Bytes [[gnu::vector_size(vectorBytes)]] = unsigned char;
using SignedBytes [[gnu::vector_size(vectorBytes)]] = signed char;
using Units [[gnu::vector_size(vectorBytes)]] = unsigned short;
using Lane = Bytes;

inline __m128i raw(auto vector) {
    return reinterpret_cast<__m128i>(vector);
}
inline Bytes bytes(auto vector) {
    return reinterpret_cast<Bytes>(vector);
}
inline Units units(auto vector) {
    return reinterpret_cast<Units>(vector);
}

inline Bytes load(void const* at) {
    return bytes(_mm_loadu_si128(static_cast<__m128i const*>(at)));
}
/// For a vector that is used twice: compilers would load it twice.
inline Bytes loadOnce(void const* at) {
    Bytes vector = load(at);
    asm("" : "+x"(vector));
    return vector;
}
inline void store(void* at, auto vector) {
    _mm_storeu_si128(static_cast<__m128i*>(at), raw(vector));
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
    return bytes(_mm_shuffle_epi8(raw(row), raw(index)));
}

/// The differences, 0 where they would be negative.
inline Bytes subtractSaturated(Bytes a, Bytes b) {
    return bytes(_mm_subs_epu8(raw(a), raw(b)));
}

/// Bytes of `yes` where `choice` has its highest bit set, of `no` elsewhere.
inline Bytes select(Bytes choice, Bytes yes, Bytes no) {
    return bytes(_mm_blendv_epi8(raw(no), raw(yes), raw(choice)));
}

/// The vector that begins `Count` bytes before `vector`, in a text where `before` stands in front of it.
template <int Count>
Bytes shiftedIn(Bytes vector, Bytes before) {
    return bytes(_mm_alignr_epi8(raw(vector), raw(before), 16 - Count));
}

/// The vector that begins `Count` bytes after `vector`, in a text where `after` stands behind it.
template <int Count>
Bytes shiftedOut(Bytes vector, Bytes after) {
    return bytes(_mm_alignr_epi8(raw(after), raw(vector), Count));
}

/// Within each lane, the bytes of both vectors in turns: of the first and of the second half.
inline Units interleaveLow(Bytes even, Bytes odd) {
    return units(_mm_unpacklo_epi8(raw(even), raw(odd)));
}
inline Units interleaveHigh(Bytes even, Bytes odd) {
    return units(_mm_unpackhi_epi8(raw(even), raw(odd)));
}
inline Bytes interleaveUnitsLow(Units even, Units odd) {
    return bytes(_mm_unpacklo_epi16(raw(even), raw(odd)));
}
inline Bytes interleaveUnitsHigh(Units even, Units odd) {
    return bytes(_mm_unpackhi_epi16(raw(even), raw(odd)));
}

template <int Index>
Lane laneOf(auto vector) {
    static_assert(Index == 0);
    return bytes(vector);
}

/// Bytes as units: of the first and of the second half of the vector.
inline Units widenLow(Bytes vector) {
    return units(_mm_cvtepu8_epi16(raw(vector)));
}
inline Units widenHigh(Bytes vector) {
    return interleaveHigh(vector, Bytes{});
}

/// Units below 0x100, in their order, as bytes.
inline Bytes narrow(Units first, Units second) {
    return bytes(_mm_packus_epi16(raw(first), raw(second)));
}

inline bool isZero(auto vector) {
    return _mm_testz_si128(raw(vector), raw(vector)) != 0;
}

/// The highest bits of the bytes of at most 64, that of the first one lowest.
template <unsigned Count>
std::uint64_t signsOf(Bytes const (&vectors)[Count]) {
    std::uint64_t signs = 0;
    for (unsigned i = 0; i < Count; ++i)
        signs |= std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(raw(vectors[i])))} << 16 * i;
    return signs;
}

} // namespace
} // namespace vyn
