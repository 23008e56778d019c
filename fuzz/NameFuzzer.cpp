// Names of sets, numbers, and locale texts in LANG: any bytes, and the same spelled in other ways.

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "tests/support/ServedSets.h"

#include <vynulib/CharSetConverterManager.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace {

char toggledCase(char c) {
    bool const isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return isLetter ? static_cast<char>(c ^ 0x20) : c;
}

/// The same name to people: other case, and what is ignored at another place.
std::string respelled(std::string_view name, Input& input) {
    std::string result;
    for (char const c : name) {
        result += input.flag() ? toggledCase(c) : c;
        if (input.flag())
            result += input.among(std::string_view("-_ \t"));
    }
    return result;
}

void findName(Input& input) {
    Input spelling = input;
    std::string const text = input.text();
    auto const exact = std::make_unique<char[]>(text.size()); // no terminator
    std::copy(text.begin(), text.end(), exact.get());
    auto const found = vynulib::charSetNamed({exact.get(), text.size()});
    if (found == VYNCS_OS_DEFAULT)
        return; // the number has a sign, which is ignored elsewhere
    require(vynulib::charSetNamed(respelled(text, spelling)) == found, "a name is the same however it is spelled");
    if (found)
        require(vynulib::charSetNamed(vynulib::preferredName(*found)) == found, "the preferred name names its set",
                *found);
}

void findNumber(Input& input) {
    auto const cs = static_cast<VynCharSet>(input.upTo(0xFFFF));
    bool const served = std::ranges::find(servedSets(), cs) != servedSets().end();
    require(vynulib::charSetNamed(std::to_string(cs)) == (served ? std::optional(cs) : std::nullopt),
            "a number names the set that has it", cs);
    try {
        require(vynulib::charSetNamed(vynulib::preferredName(cs)) == cs && served, "the preferred name", cs);
    } catch (std::invalid_argument const&) {
        require(!served, "each set that is served has a preferred name", cs);
    }
}

void findExactName(Input& input) {
    std::string const name = input.text();
    VynCharSet const cs = VynCharSetFromString(name.c_str());
    require(cs == VYNCS_OS_DEFAULT || VynCharSetToString(cs) == std::string_view(name.c_str()),
            "a name is found exactly", cs);
}

VynCharSet detected(std::string const& locale) {
    setenv("LANG", locale.c_str(), 1);
    return g_oCnvtMgr.getDefaultCharSet();
}

void eraseThrough(std::string& text, char last) {
    if (std::size_t const at = text.find(last); at != text.npos)
        text.erase(0, at + 1);
}

/// A locale text gives the set that its codeset alone gives.
void detect(Input& input) {
    std::string text = input.text();
    for (char& c : text) // the reading of malformed UTF-8 is the converter's matter
        c = static_cast<char>(c & 0x7F);
    text = text.c_str();
    std::string codeset;
    for (char const c : text)
        codeset += c >= 'a' && c <= 'z' ? toggledCase(c) : c;
    bool const isEuc = codeset.ends_with(".EUC");
    eraseThrough(codeset, isEuc ? '_' : '.');
    if (!isEuc)
        codeset.resize(std::min(codeset.find('@'), codeset.size()));
    std::erase(codeset, '-');
    VynCharSet const cs = detected(text);
    require(cs == VYNCS_ISO_8859_1 || VynCharSetToString(cs) != std::string_view("VYNCS_OS_DEFAULT"),
            "what is detected has a name", cs);
    if (isEuc == codeset.ends_with(".EUC")) // not where removing a hyphen made such an end
        require(detected((isEuc ? "x_" : "x.") + codeset) == cs, "the codeset decides", codeset, cs);
}

void detectAnything(Input& input) {
    VynCharSet const cs = detected(input.text().c_str());
    require(std::ranges::find(namedSets, cs) != std::end(namedSets), "what is detected has a name", cs);
}

constexpr void (*tests[])(Input&) = {findName, findNumber, findExactName, detect, detectAnything};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    input.among(tests)(input);
    return 0;
}
