#pragma once

#include <vynulib/Transcoding.h>

#include <iterator>
#include <vector>

/// All sets that have a name.
inline constexpr VynCharSet namedSets[] = {
#define ROW(name, number) name,
    VYN_CHARSETS(ROW)
#undef ROW
};
/// The names, in the same order.
inline constexpr char const* setNames[] = {
#define ROW(name, number) #name,
    VYN_CHARSETS(ROW)
#undef ROW
};

/// Those that the strict functions convert, the default set not among them.
inline std::vector<VynCharSet> const& servedSets() {
    static std::vector<VynCharSet> const sets = [] {
        std::vector<VynCharSet> served;
        for (VynCharSet const cs : namedSets)
            if (cs != VYNCS_OS_DEFAULT && vynulib::charSetNamed(VynCharSetToString(cs)))
                served.push_back(cs);
        return served;
    }();
    return sets;
}
