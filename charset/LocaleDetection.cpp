#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynUStringList.h>

#include <clocale>
#include <cstdlib>
#include <exception>

namespace {

struct LocaleKey {
    char const* key; // codeset of a locale name, in upper case and without '-'
    VynCharSet cs;
};

// "UJIS" deliberately means the Shift_JIS family here, not EUC-JP.
constexpr LocaleKey localeKeys[] = {
    {"UTF8", VYNCS_UTF8},
    {"ISO88591", VYNCS_ISO_8859_1},
    {"ISO88592", VYNCS_ISO_8859_2},
    {"ISO88593", VYNCS_ISO_8859_3},
    {"ISO88594", VYNCS_ISO_8859_4},
    {"ISO88595", VYNCS_ISO_8859_5},
    {"ISO88596", VYNCS_ISO_8859_6},
    {"ISO88597", VYNCS_ISO_8859_7},
    {"ISO88598", VYNCS_ISO_8859_8},
    {"ISO88599", VYNCS_ISO_8859_9},
    {"ISO885910", VYNCS_ISO_8859_10},
    {"ISO885911", VYNCS_ISO_8859_11},
    {"ISO885913", VYNCS_ISO_8859_13},
    {"ISO885914", VYNCS_ISO_8859_14},
    {"ISO885915", VYNCS_ISO_8859_15},
    {"ISO885916", VYNCS_ISO_8859_16},
    {"JA", VYNCS_EUC_JP},
    {"EUCJP", VYNCS_EUC_JP},
    {"EUCKR", VYNCS_EUC_KR},
    {"EUCTW", VYNCS_EUC_TW},
    {"CN.EUC", VYNCS_EUC_CN},
    {"KR.EUC", VYNCS_EUC_KR},
    {"TW.EUC", VYNCS_EUC_TW},
    {"SJIS", VYNCS_WCP932},
    {"UJIS", VYNCS_WCP932},
    {"PCK", VYNCS_WCP932},
    {"GB18030", VYNCS_GB18030},
    {"BIG5", VYNCS_BIG5},
};

constexpr unsigned long npos = VynUString::npos;

bool endsWith(VynUString const& text, VynUString const& end) {
    return text.length() >= end.length() && text.mid(text.length() - end.length(), end.length()) == end;
}

void eraseThrough(VynUString& text, unsigned short unit) {
    if (unsigned long const at = text.find(unit, 0); at != npos)
        text.erase(0, at + 1);
}

/// The part of a locale name that names its codeset, in the form of the keys: "en_US.UTF-8@euro" gives "UTF8". A name
/// without a codeset stays whole but for what follows '@'; one in ".EUC" keeps its country, "zh_CN.EUC" gives "CN.EUC".
/// There is no default set yet while this runs: each text in it names its set or is made of units.
VynUString codesetKey(char const* locale) {
    VynUString key(locale, VYNCS_UTF8);
    key.toUpper(true);
    if (endsWith(key, VynUString(".EUC", VYNCS_UTF8))) {
        eraseThrough(key, '_');
    } else {
        eraseThrough(key, '.');
        if (unsigned long const at = key.find('@', 0); at != npos)
            key.erase(at, npos);
    }
    return key.split(static_cast<unsigned short>('-')).combine(VynUString());
}

char const* localeName() {
    char const* const language = std::getenv("LANG");
    return language ? language : std::setlocale(LC_CTYPE, nullptr);
}

} // namespace

void CharSetConverterManager::initLocaleMap() {
    for (LocaleKey const& row : localeKeys)
        m_oLocaleMap.try_emplace(VynUString(row.key, VYNCS_UTF8), row.cs);
}

VynCharSet CharSetConverterManager::getDefaultCharSet() {
    char const* const locale = localeName();
    if (!locale)
        return VYNCS_ISO_8859_1;
    try {
        auto const found = m_oLocaleMap.find(codesetKey(locale));
        return found != m_oLocaleMap.end() ? found->second : VYNCS_ISO_8859_1;
    } catch (std::exception const&) {
        return VYNCS_ISO_8859_1; // whatever the environment holds, the library loads
    }
}
