#pragma once

#include "converters/kernels/CaseMap.h"

#include <vynulib/VynLazy.h>

namespace vyn {

/// One case of all units, for kernels: 128 KiB, which are built at the first use.
class LazyCaseMap {
public:
    /// From the ranges of a counting `VynUCharTable`.
    constexpr LazyCaseMap(AsciiLetters changed, unsigned short const* ranges) noexcept
        : m_pRanges(ranges), m_eChanged(changed) {}

    AsciiLetters changedInAscii() const noexcept { return m_eChanged; }

    /// Null before the first use.
    CaseMap const* built() const noexcept { return m_map.get(); }

    /// Builds it at the first use, which throws `std::bad_alloc` where memory runs out.
    CaseMap const& map();

    void release() noexcept;

private:
    Lazy<CaseMap> m_map;
    unsigned short const* m_pRanges;
    AsciiLetters m_eChanged;
};

extern LazyCaseMap upperCase, lowerCase;

} // namespace vyn
