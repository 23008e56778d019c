#include <vynulib/Transcoding.h>

#include "charset/ServedSets.h"
#include "charset/SetNames.h"

#include <algorithm>
#include <charconv>

namespace {

using vyn::SetNames;
using vyn::setNames;

/// What stands before the number of a code page, folded.
constexpr std::string_view codePagePrefixes[] = {"", "cp", "xcp", "wcp", "ms", "win", "windows", "cswindows"};

constexpr std::string_view ownPrefix = "vyncs";

constexpr std::string_view blanks = " \t";
constexpr std::string_view ignored = "-_ \t";

/// A name in lower case, without the characters to ignore. Empty where it is longer than any name that is known.
class FoldedName {
public:
    FoldedName(std::string_view name, std::string_view without) {
        for (char const c : name) {
            if (without.find(c) != std::string_view::npos)
                continue;
            if (m_size == sizeof m_text) {
                m_size = 0;
                return;
            }
            m_text[m_size++] = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }

    operator std::string_view() const { return {m_text, m_size}; }

private:
    char m_text[64];
    std::size_t m_size = 0;
};

bool isSpelled(std::string_view name, std::string_view folded) {
    return std::string_view(FoldedName(name, ignored)) == folded;
}

bool hasName(SetNames const& row, std::string_view folded) {
    if (isSpelled(row.preferred, folded))
        return true;
    for (std::string_view rest = row.aliases; !rest.empty();) {
        std::size_t const end = std::min(rest.find(' '), rest.size());
        if (isSpelled(rest.substr(0, end), folded))
            return true;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return false;
}

/// The number that `folded` is or ends with, after a prefix of those above.
std::optional<int> codePageNumber(std::string_view folded) {
    std::size_t const prefix = folded.find_last_not_of("0123456789") + 1; // 0 where there is none
    if (std::ranges::find(codePagePrefixes, folded.substr(0, prefix)) == std::end(codePagePrefixes))
        return std::nullopt;
    int number = 0;
    auto const [end, error] = std::from_chars(folded.data() + prefix, folded.data() + folded.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<VynCharSet> vynulib::charSetNamed(std::string_view name) {
    // The one number with a sign: without it, 2 is no set.
    if (std::string_view(FoldedName(name, blanks)) == "-2")
        return VYNCS_OS_DEFAULT;
    FoldedName const whole(name, ignored);
    std::string_view folded = whole;
    if (folded.starts_with(ownPrefix))
        folded.remove_prefix(ownPrefix.size());
    if (folded.empty())
        return std::nullopt;
    std::optional<int> const number = codePageNumber(folded);
    auto const* const row = std::ranges::find_if(
        setNames, [&](SetNames const& names) { return number == names.cs || hasName(names, folded); });
    return row != std::end(setNames) ? std::optional(row->cs) : std::nullopt;
}

std::string_view vynulib::preferredName(VynCharSet cs) {
    return std::ranges::find(setNames, vyn::requireServedSet(cs).cs, &SetNames::cs)->preferred;
}
