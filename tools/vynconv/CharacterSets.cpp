#include "tools/vynconv/CharacterSets.h"

#include "tools/vynconv/Failure.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynCharSetConverter.h>

#include <charconv>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>

namespace vynconv {
namespace {

// The library converts a set that it does not serve as UTF-8.
bool isServed(VynCharSet cs) {
    return cs == VYNCS_UTF8 || VynCharSetConverter::getConverter(cs) != VynCharSetConverter::getConverter(VYNCS_UTF8);
}

std::optional<VynCharSet> setOfNumber(std::string const& text) {
    int number = 0;
    char const* const end = text.data() + text.size();
    auto const [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end)
        return std::nullopt;
    // An unknown number prints as the default set.
    auto const cs = static_cast<VynCharSet>(number);
    return VynCharSetFromString(VynCharSetToString(cs)) == cs ? std::optional(cs) : std::nullopt;
}

std::optional<VynCharSet> setOfName(std::string const& name) {
    VynCharSet const cs = VynCharSetFromString(name.c_str());
    return VynCharSetToString(cs) == name ? std::optional(cs) : std::nullopt;
}

std::optional<VynCharSet> findSet(std::string const& text) {
    if (auto const cs = setOfNumber(text))
        return cs;
    std::string name = text;
    for (char& c : name)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    auto const cs = setOfName(name);
    return cs ? cs : setOfName("VYNCS_" + name);
}

} // namespace

VynCharSet parseCharacterSet(std::string const& text) {
    std::optional<VynCharSet> cs = findSet(text);
    if (!cs)
        throw UsageFailure("unknown character set '" + text + "'; --list shows the known ones");
    if (*cs == VYNCS_OS_DEFAULT)
        cs = g_oCnvtMgr.getDefaultCharSet();
    if (!isServed(*cs))
        throw UsageFailure(std::string("no converter for ") + VynCharSetToString(*cs) +
                           "; --list shows the sets that have one");
    return *cs;
}

std::string listCharacterSets() {
    std::map<int, char const*> served;
#define VYNCONV_ADD_SET(name, number)                                                                                  \
    if (name != VYNCS_OS_DEFAULT && isServed(name))                                                                    \
        served.emplace(number, #name);
    VYN_CHARSETS(VYNCONV_ADD_SET)
#undef VYNCONV_ADD_SET
    std::string list;
    for (auto const& [number, name] : served) {
        char line[64];
        std::snprintf(line, sizeof line, "%5d %s\n", number, name);
        list += line;
    }
    return list;
}

std::string describeDefaultSet() {
    VynCharSet const cs = g_oCnvtMgr.getDefaultCharSet();
    std::string text = VynCharSetToString(cs);
    text += " (" + std::to_string(cs) + (isServed(cs) ? ")" : ", converted as UTF-8)");
    if (char const* const lang = std::getenv("LANG"))
        return text + " from LANG=" + lang + "\n";
    char const* const locale = std::setlocale(LC_CTYPE, nullptr);
    return text + " from LC_CTYPE=" + (locale ? locale : "") + "\n";
}

} // namespace vynconv
