#include "converters/kernels/Kernels.h"

#include "converters/kernels/PortableUnits.h"
#include "converters/kernels/UnitScan.h"

#include <cstdlib>
#include <cstring>

namespace vyn {
namespace {

template <class Bulk, class Source, class Target>
Bulk takeNothing(Source const* src, Source const*, Target* dst) {
    return {src, dst};
}
template <class Bulk, class Table, class Source, class Target>
Bulk takeNothing(Table const&, Source const* src, Source const*, Target* dst) {
    return {src, dst};
}

template <class Element>
BulkCounted<Element> countNothing(Element const* src, Element const*) {
    return {src, 0};
}

constexpr Kernels portableKernels = {
    .level = "portable",
    .decodeLenientUtf8 = takeNothing,
    .decodeStrictUtf8 = takeNothing,
    .encodeUtf8 = takeNothing,
    .countLenientUtf8 = countNothing,
    .countUtf8 = countNothing,
    .decodeSingleByte = takeNothing,
    .encodeSingleByte = takeNothing,
    .decodeDoubleByte = takeNothing,
    .encodeDoubleByte = takeNothing,
    .unitLength = unitLengthByWords,
    .firstUnit = firstUnitByBlocks,
    .lastUnit = lastUnitByBlocks,
    .firstEnds = firstEndsByBlocks,
    .lastEnds = lastEndsByBlocks,
    .sameUnits = sameUnitsByBlocks,
    .sameUnitsNoCase = sameUnitsNoCaseByBlocks,
    .changeAsciiCase = changeAsciiCaseByUnits,
    .changeCase = changeCaseByUnits,
};

struct Level {
    Kernels const& kernels;
    bool (*isSupported)();
};

/// The best first.
constexpr Level levels[] = {
#if defined(__x86_64__)
    {avx2Kernels,
     [] {
         return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
     }},
    {sse4Kernels, [] { return __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt"); }},
#elif defined(__aarch64__)
    {neonKernels, [] { return true; }},
#endif
    {portableKernels, [] { return true; }},
};

/// A name that is none of a level that the machine has asks for nothing.
[[gnu::constructor]] void chooseLevel() {
#if defined(__x86_64__)
    __builtin_cpu_init();
#endif
    char const* const wanted = std::getenv("VYNULIB_LEVEL");
    Kernels const* best = nullptr;
    for (Level const& level : levels) {
        if (!level.isSupported())
            continue;
        if (!best)
            best = &level.kernels;
        if (wanted && std::strcmp(wanted, level.kernels.level) == 0)
            best = &level.kernels;
    }
    kernels = *best;
}

} // namespace

constinit Kernels kernels = portableKernels;

} // namespace vyn
