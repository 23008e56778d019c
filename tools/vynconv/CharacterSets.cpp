#include "tools/vynconv/CharacterSets.h"

#include "tools/vynconv/Failure.h"
#include "tools/vynconv/Messages.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/Transcoding.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <vector>

namespace vynconv {
namespace {

using vynulib::charSetNamed;

constexpr VynCharSet markedSets[] = {VYNCS_UTF8, VYNCS_UTF16, VYNCS_UTF16BE, VYNCS_UTF32, VYNCS_UTF32BE};

// By number.
std::vector<VynCharSet> servedSets() {
#define VYNCONV_SET(name, number) name,
    std::vector<VynCharSet> sets = {VYN_CHARSETS(VYNCONV_SET)};
#undef VYNCONV_SET
    std::erase_if(sets, [](VynCharSet cs) { return cs == VYNCS_OS_DEFAULT || !charSetNamed(VynCharSetToString(cs)); });
    std::ranges::sort(sets);
    return sets;
}

// As the library compares names.
std::string folded(std::string_view name) {
    std::string text;
    for (char const c : name)
        if (c != '-' && c != '_' && c != ' ' && c != '\t')
            text += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text.starts_with("vyncs") ? text.substr(5) : text;
}

// Characters to insert, delete or replace.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1); // from what is read of `a` to each beginning of `b`
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (char const c : a) {
        std::size_t diagonal = row[0]++;
        for (std::size_t i = 0; i < b.size(); ++i) {
            std::size_t const replaced = diagonal + (c == b[i] ? 0 : 1);
            diagonal = row[i + 1];
            row[i + 1] = std::min({replaced, diagonal + 1, row[i] + 1});
        }
    }
    return row.back();
}

std::string_view nearestName(std::string_view name) {
    std::string const wanted = folded(name);
    std::string_view nearest;
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (VynCharSet const cs : servedSets()) {
        std::string_view const preferred = vynulib::preferredName(cs);
        std::size_t const distance =
            std::min(editDistance(wanted, folded(preferred)), editDistance(wanted, folded(VynCharSetToString(cs))));
        if (distance < least) {
            least = distance;
            nearest = preferred;
        }
    }
    return nearest;
}

} // namespace

VynCharSet findSet(std::string const& name) {
    auto const cs = charSetNamed(name);
    if (!cs)
        throw UsageFailure("no character set '" + printable(name) + "' is known, the nearest is " +
                           std::string(nearestName(name)) + "; --list shows all");
    if (cs != VYNCS_OS_DEFAULT)
        return *cs;
    char const* const defaultName = VynCharSetToString(g_oCnvtMgr.getDefaultCharSet());
    auto const defaultSet = charSetNamed(defaultName);
    if (!defaultSet)
        throw UsageFailure(std::string("no converter for the default set ") + defaultName);
    return *defaultSet;
}

InputSet findInputSet(std::string const& name) {
    VynCharSet const cs = findSet(name);
    std::string const text = folded(name);
    if (text.ends_with("utf16"))
        return {cs, VYNCS_UTF16BE};
    if (text.ends_with("utf32"))
        return {cs, VYNCS_UTF32BE};
    return {cs, cs};
}

std::string byteOrderMark(VynCharSet cs) {
    bool const marked = std::ranges::find(markedSets, cs) != std::end(markedSets);
    return marked ? vynulib::encode(cs, u"\uFEFF") : std::string();
}

std::string listCharacterSets() {
    std::string list;
    for (VynCharSet const cs : servedSets()) {
        char line[64];
        std::snprintf(line, sizeof line, "%5d %-17s ", cs, VynCharSetToString(cs));
        list += line;
        list += vynulib::preferredName(cs);
        list += '\n';
    }
    return list;
}

std::string describeDefaultSet() {
    VynCharSet const cs = g_oCnvtMgr.getDefaultCharSet();
    std::string text = VynCharSetToString(cs);
    text += " (" + std::to_string(cs) + (charSetNamed(text) ? ")" : ", without a converter)");
    if (char const* const lang = std::getenv("LANG"))
        return text + " from LANG=" + printable(lang) + "\n";
    char const* const locale = std::setlocale(LC_CTYPE, nullptr);
    return text + " from LC_CTYPE=" + (locale ? locale : "") + "\n";
}

} // namespace vynconv
