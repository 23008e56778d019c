#include "tools/charsets/GlibcComparison.h"

#include <vynulib/Transcoding.h>

#include <gnu/libc-version.h>
#include <iconv.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

using Character = std::optional<std::u16string>;

// The units of one character, but for combining sequences, of which each code has one by itself.
Character oneCharacter(std::u16string const& text) {
    bool const pair = text.size() == 2 && text[0] >= 0xD800 && text[0] < 0xDC00;
    return text.size() == 1 || pair ? Character(text) : std::nullopt;
}

Character decodeHere(VynCharSet cs, std::string const& code) {
    vynulib::Report report;
    std::u16string const text = vynulib::decode(cs, code, vynulib::OnError::stop, &report);
    return report.losses == 0 ? oneCharacter(text) : std::nullopt;
}

class GlibcDecoder {
public:
    explicit GlibcDecoder(char const* name) : m_iconv(iconv_open("UTF-16LE", name)) {
        if (reinterpret_cast<std::intptr_t>(m_iconv) == -1)
            throw std::runtime_error(std::string("glibc has no converter ") + name);
    }
    GlibcDecoder(GlibcDecoder const&) = delete;
    GlibcDecoder& operator=(GlibcDecoder const&) = delete;
    ~GlibcDecoder() { iconv_close(m_iconv); }

    Character decode(std::string code) {
        char16_t units[8];
        char* source = code.data();
        char* end = reinterpret_cast<char*>(units);
        std::size_t bytes = code.size(), room = sizeof units;
        iconv(m_iconv, nullptr, nullptr, nullptr, nullptr);
        if (iconv(m_iconv, &source, &bytes, &end, &room) != 0 || bytes != 0)
            return std::nullopt;
        iconv(m_iconv, nullptr, nullptr, &end, &room); // what it keeps back because it may combine with what follows
        return oneCharacter({units, reinterpret_cast<char16_t*>(end)});
    }

private:
    iconv_t m_iconv;
};

void compare(GlibcComparison& comparison) {
    GlibcDecoder glibc(comparison.name);
    auto const compareCode = [&](std::string const& code, unsigned number) {
        Character const here = decodeHere(comparison.cs, code), there = glibc.decode(code);
        if (here != there)
            (!there ? comparison.onlyHere : !here ? comparison.onlyThere : comparison.otherCharacter).push_back(number);
        return here || there;
    };
    for (unsigned first = 0; first < 0x100; ++first) {
        std::string const byte(1, static_cast<char>(first));
        if (compareCode(byte, first))
            continue;
        for (unsigned second = 0; second < 0x100; ++second)
            compareCode(byte + static_cast<char>(second), first << 8 | second);
    }
}

} // namespace

char const* glibcVersion() {
    return gnu_get_libc_version();
}

std::vector<GlibcComparison> compareWithGlibc() {
    std::vector<GlibcComparison> comparisons = {{VYNCS_WCP874, "CP874"},
                                                {VYNCS_WCP932, "CP932"},
                                                {VYNCS_WCP936, "CP936"},
                                                {VYNCS_WCP949, "CP949"},
                                                {VYNCS_WCP950, "CP950"},
                                                {VYNCS_WCP1250, "CP1250"},
                                                {VYNCS_WCP1251, "CP1251"},
                                                {VYNCS_WCP1252, "CP1252"},
                                                {VYNCS_WCP1253, "CP1253"},
                                                {VYNCS_WCP1254, "CP1254"},
                                                {VYNCS_WCP1255, "CP1255"},
                                                {VYNCS_WCP1256, "CP1256"},
                                                {VYNCS_WCP1257, "CP1257"},
                                                {VYNCS_WCP1258, "CP1258"},
                                                {VYNCS_KOI8R, "KOI8-R"},
                                                {VYNCS_ISO_8859_1, "ISO-8859-1"},
                                                {VYNCS_ISO_8859_2, "ISO-8859-2"},
                                                {VYNCS_ISO_8859_3, "ISO-8859-3"},
                                                {VYNCS_ISO_8859_4, "ISO-8859-4"},
                                                {VYNCS_ISO_8859_5, "ISO-8859-5"},
                                                {VYNCS_ISO_8859_6, "ISO-8859-6"},
                                                {VYNCS_ISO_8859_7, "ISO-8859-7"},
                                                {VYNCS_ISO_8859_8, "ISO-8859-8"},
                                                {VYNCS_ISO_8859_9, "ISO-8859-9"},
                                                {VYNCS_ISO_8859_10, "ISO-8859-10"},
                                                {VYNCS_ISO_8859_11, "ISO-8859-11"},
                                                {VYNCS_ISO_8859_13, "ISO-8859-13"},
                                                {VYNCS_ISO_8859_14, "ISO-8859-14"},
                                                {VYNCS_ISO_8859_15, "ISO-8859-15"},
                                                {VYNCS_ISO_8859_16, "ISO-8859-16"},
                                                {VYNCS_SHIFTJIS, "CP932"},
                                                {VYNCS_SJIS0213, "SHIFT_JISX0213"},
                                                {VYNCS_BIG5, "CP950"},
                                                {VYNCS_EUC_JP, "EUC-JP"},
                                                {VYNCS_EUC_CN, "GB2312"},
                                                {VYNCS_EUC_KR, "EUC-KR"},
                                                {VYNCS_GB18030, "GB18030"}};
    for (GlibcComparison& comparison : comparisons)
        compare(comparison);
    return comparisons;
}
