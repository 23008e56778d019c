// The names that both the library and ICU know: each means the set whose converter ICU opens for it, or is a choice.

#include "tests/differential/KnownDifferences.h"

#include <vynulib/Transcoding.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

struct Choice {
    char const* reason;
    std::vector<std::string> aliases; // as ICU spells them
};

std::vector<Choice> const choices = {
    {"a number is that of the set, whatever the maker of the name gave it to",
     {"949", "cp949", "cp932", "ms932", "windows-932", "ms950", "windows-950", "MS874", "windows-874", "cp1200"}},
    {"the IANA names of Windows's set go with its number", {"windows-31j", "csWindows31J"}},
    {"ICU opens another table of the same encoding",
     {"EUC-JP", "Extended_UNIX_Code_Packed_Format_for_Japanese", "csEUCPkdFmtJapanese", "X-EUC-JP", "ujis", "ibm-943"}},
    {"IANA registers it as one with ISO-8859-11", {"TIS-620"}},
    {"texts have the form EUC-CN, not the 7-bit set",
     {"GB_2312-80", "chinese", "csISO58GB231280", "gb2312-1980", "iso-ir-58"}},
    {"little-endian whatever byte-order mark there is",
     {"UTF-16", "ISO-10646-UCS-2", "csUnicode", "ucs-2", "unicode", "UnicodeLittle", "UTF-32", "ISO-10646-UCS-4",
      "csUCS4", "ucs-4"}},
    {"big-endian whatever byte-order mark there is", {"UnicodeBig"}},
};

/// The converter of ICU that is nearest to a set; empty where there is none.
std::string icuConverterOf(VynCharSet set) {
    auto const row = std::ranges::find(comparedSets, set, &ComparedSet::set);
    if (row == comparedSets.end()) // a set in big-endian order
        return std::string(vynulib::preferredName(set));
    return row->icuName ? icuConverterName(row->icuName) : "";
}

TEST(Aliases, MeanWhatTheyDoInIcu) {
    std::map<std::string, char const*> reasons;
    for (auto const& [reason, aliases] : choices)
        for (std::string const& alias : aliases)
            reasons[alias] = reason;
    unsigned common = 0;
    for (std::string const& alias : icuAliases()) {
        auto const set = vynulib::charSetNamed(alias);
        if (!set)
            continue;
        ++common;
        std::string const ours = icuConverterOf(*set), theirs = icuConverterName(alias.c_str());
        bool const isChoice = reasons.erase(alias) != 0;
        EXPECT_NE(ours == theirs, isChoice) << alias << " is " << ours << ", in ICU " << theirs;
    }
    for (auto const& [alias, reason] : reasons)
        ADD_FAILURE() << alias << " occurs no longer: " << reason;
    EXPECT_GT(common, 100U);
}

} // namespace
