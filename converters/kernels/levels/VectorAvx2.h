#pragma once

#include <cstdint>
#include <immintrin.h>

// The operations on vectors that kernels are written in, 32 bytes wide. What a kernel does by operators needs no name here.

namespace vyn {
namespace {

static_assert(__AVX2__ && __BMI2__ && __POPCNT__, "to be compiled for these");

inline constexpr long vectorBytes = 32;

using Bytes [[gnu::vector_size(vectorBytes)]] = unsigned char;
using SignedBytes [[gnu::vector_size(vectorBytes)]] = signed char;
using Units [[gnu::vector_size(vectorBytes)]] = unsigned short;
using Lane [[gnu::vector_size(16)]] = unsigned char;

inline __m256i raw(auto vector) {
    return reinterpret_cast<__m256i>(vector);
}
inline Bytes bytes(auto vector) {
    return reinterpret_cast<Bytes>(vector);
}
inline Units units(auto vector) {
    return reinterpret_cast<Units>(vector);
}

inline Bytes load(void const* at) {
    return bytes(_mm256_loadu_si256(static_cast<__m256i const*>(at)));
}
/// For a vector that is used twice: compilers would load it twice.
inline Bytes loadOnce(void const* at) {
    Bytes vector = load(at);
    asm("" : "+x"(vector));
    return vector;
}
inline void store(void* at, auto vector) {
    _mm256_storeu_si256(static_cast<__m256i*>(at), raw(vector));
}
inline Lane loadLane(void const* at) {
    return reinterpret_cast<Lane>(_mm_loadu_si128(static_cast<__m128i const*>(at)));
}
inline void storeLane(void* at, Lane lane) {
    _mm_storeu_si128(static_cast<__m128i*>(at), reinterpret_cast<__m128i>(lane));
}

/// The same 16 bytes in each lane.
inline Bytes loadRow(void const* at) {
    return bytes(_mm256_broadcastsi128_si256(_mm_loadu_si128(static_cast<__m128i const*>(at))));
}

/// Within each lane: the byte of `row` whose number stands in the four lowest bits of `index`, or 0 where that has its
/// highest bit set.
inline Bytes lookUp(Bytes row, Bytes index) {
    return bytes(_mm256_shuffle_epi8(raw(row), raw(index)));
}
inline Lane lookUp(Lane row, Lane index) {
    return reinterpret_cast<Lane>(_mm_shuffle_epi8(reinterpret_cast<__m128i>(row), reinterpret_cast<__m128i>(index)));
}

/// The differences, 0 where they would be negative.
inline Bytes subtractSaturated(Bytes a, Bytes b) {
    return bytes(_mm256_subs_epu8(raw(a), raw(b)));
}

/// Bytes of `yes` where `choice` has its highest bit set, of `no` elsewhere.
inline Bytes select(Bytes choice, Bytes yes, Bytes no) {
    return bytes(_mm256_blendv_epi8(raw(no), raw(yes), raw(choice)));
}

/// The vector that begins `Count` bytes before `vector`, in a text where `before` stands in front of it.
template <int Count>
Bytes shiftedIn(Bytes vector, Bytes before) {
    __m256i const middle = _mm256_permute2x128_si256(raw(before), raw(vector), 0x21);
    return bytes(_mm256_alignr_epi8(raw(vector), middle, 16 - Count));
}

/// The vector that begins `Count` bytes after `vector`, in a text where `after` stands behind it.
template <int Count>
Bytes shiftedOut(Bytes vector, Bytes after) {
    __m256i const middle = _mm256_permute2x128_si256(raw(vector), raw(after), 0x21);
    return bytes(_mm256_alignr_epi8(middle, raw(vector), Count));
}

/// Within each lane, the bytes of both vectors in turns: of the first and of the second half.
inline Units interleaveLow(Bytes even, Bytes odd) {
    return units(_mm256_unpacklo_epi8(raw(even), raw(odd)));
}
inline Units interleaveHigh(Bytes even, Bytes odd) {
    return units(_mm256_unpackhi_epi8(raw(even), raw(odd)));
}
inline Bytes interleaveUnitsLow(Units even, Units odd) {
    return bytes(_mm256_unpacklo_epi16(raw(even), raw(odd)));
}
inline Bytes interleaveUnitsHigh(Units even, Units odd) {
    return bytes(_mm256_unpackhi_epi16(raw(even), raw(odd)));
}

template <int Index>
Lane laneOf(auto vector) {
    return reinterpret_cast<Lane>(_mm256_extracti128_si256(raw(vector), Index));
}

/// Bytes as units: of the first and of the second half of the vector.
inline Units widenLow(Bytes vector) {
    return units(_mm256_cvtepu8_epi16(_mm256_castsi256_si128(raw(vector))));
}
inline Units widenHigh(Bytes vector) {
    return units(_mm256_cvtepu8_epi16(_mm256_extracti128_si256(raw(vector), 1)));
}

/// Units below 0x100, in their order, as bytes.
inline Bytes narrow(Units first, Units second) {
    return bytes(_mm256_permute4x64_epi64(_mm256_packus_epi16(raw(first), raw(second)), 0xD8));
}

inline bool isZero(auto vector) {
    return _mm256_testz_si256(raw(vector), raw(vector)) != 0;
}

/// The highest bits of the bytes of at most 64, that of the first one lowest.
template <unsigned Count>
std::uint64_t signsOf(Bytes const (&vectors)[Count]) {
    std::uint64_t signs = 0;
    for (unsigned i = 0; i < Count; ++i)
        signs |= std::uint64_t{static_cast<unsigned>(_mm256_movemask_epi8(raw(vectors[i])))} << 32 * i;
    return signs;
}

} // namespace
} // namespace vyn
