// A tour of the string classes: splits, trims, folds, counts, joins and prints a guest book in several languages.
#include <vynulib/VynUStringList.h>

#include <algorithm>
#include <cstdio>

namespace {

// One guest a line, name and town, as people type them: U+3000 and U+00A0 are white space too.
constexpr char guestBook[] = " Ελένη ;ΑΘΉΝΑ\n"
                             "Zoë;\u00A0Genève \n"
                             "\u3000山田\u3000;\u3000東京\n"
                             "Ёжиков; москва\n"
                             "Renée;GENÈVE\n"
                             "Νίκος; Αθήνα\n"
                             "Weiß; Straßburg 😀\n";

VynUString trimmed(VynUString text) {
    return text.trim(VynUString::TRIM_BOTH, VynUString::TRIM_WHITESPACE);
}

bool contains(VynUStringList const& list, VynUString const& text) {
    return std::any_of(list.begin(), list.end(), [&](VynUString const& each) { return each.compareNoCase(text) == 0; });
}

} // namespace

int main() {
    VynUStringList towns;
    for (VynUString const& line : VynUString(guestBook, VYNCS_UTF8).split('\n', VYNCS_UTF8)) {
        VynUStringList const fields = line.split(';', VYNCS_UTF8);
        VynUString name = trimmed(fields.at(0)), town = trimmed(fields.at(1));
        std::printf("%s: %lu characters, %lu bytes in UTF-8, %lu in GB18030\n", name.c_str(VYNCS_UTF8), name.numChars(),
                    name.length(VYNCS_UTF8), name.length(VYNCS_GB18030));
        if (!contains(towns, town))
            towns.append(town);
    }

    VynUString joined = towns.combine(VynUString(" | ", VYNCS_UTF8));
    std::printf("%lu towns: %s\n", towns.size(), joined.c_str(VYNCS_UTF8));
    joined.toUpper(false);
    std::printf("In capitals: %s\n", joined.c_str(VYNCS_UTF8));

    VynUString const arrow(u'→');
    unsigned long const bar = joined.find(u'|');
    joined.replace(bar, 1, arrow, 0).resize(joined.find(u'|'), ' ');
    std::printf("A journey: %s\n", trimmed(joined).c_str(VYNCS_UTF8));
}
