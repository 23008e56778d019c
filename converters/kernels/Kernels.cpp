#include "converters/kernels/Kernels.h"

#include "converters/kernels/PortableUnits.h"
#include "converters/kernels/TextScan.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace vyn {
namespace {

template <class... Rows>
KernelDecoded decodeNothing(Rows const&..., unsigned char const*, unsigned char const*, unsigned short*) {
    return {};
}
template <class... Rows>
BulkEncoded<unsigned char> encodeNothing(Rows const&..., unsigned short const* src, unsigned short const*,
                                         unsigned char* dst) {
    return {src, dst};
}

unsigned long moveNothing(unsigned char const*, unsigned long, unsigned char*) {
    return 0;
}

template <class Element>
BulkCounted<Element> countNothing(Element const* src, Element const*) {
    return {src, 0};
}

unsigned long byteLength(unsigned char const* text, unsigned long most) {
    return strnlen(reinterpret_cast<char const*>(text), most);
}

constexpr Kernels portableKernels = {
    .level = "portable",
    .decodeLenientUtf8 = decodeNothing<>,
    .decodeStrictUtf8 = decodeNothing<>,
    .encodeUtf8 = encodeNothing<>,
    .moveUtf16 = moveNothing,
    .moveUtf16FromOther = moveNothing,
    .moveUtf16ToOther = moveNothing,
    .countLenientUtf8 = countNothing,
    .countUtf8 = countNothing,
    .decodeSingleByte = decodeNothing<SingleByteRows>,
    .encodeSingleByte = encodeNothing<SingleByteRows>,
    .decodeDoubleByte = decodeNothing<DoubleByteRows>,
    .encodeDoubleByte = encodeNothing<DoubleByteRows>,
    .byteLength = byteLength,
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

/// The best one, or the one that is asked for by the name of a lower one.
Kernels const& bestKernels() {
    char const* const wanted = std::getenv("VYNULIB_LEVEL");
    auto const isWanted = [wanted](Level const& level) {
        return level.isSupported() && wanted && std::strcmp(wanted, level.kernels.level) == 0;
    };
    auto const isSupported = [](Level const& level) { return level.isSupported(); };
    Level const* found = std::find_if(std::begin(levels), std::end(levels), isWanted);
    if (found == std::end(levels))
        found = std::find_if(std::begin(levels), std::end(levels), isSupported);
    return found->kernels; // the last one is supported everywhere
}

[[gnu::constructor]] void chooseLevel() {
#if defined(__x86_64__)
    __builtin_cpu_init();
#endif
    kernels = bestKernels();
}

} // namespace

constinit Kernels kernels = portableKernels;

} // namespace vyn
