// Conversion beside ICU, the C library's iconv and, where it is installed, simdutf, each on the same text in one run.

#include "Sample.h"

#include <vynulib/Transcoding.h>
#include <vynulib/VynCharSetConverter.h>

#include <iconv.h>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#ifdef VYNULIB_SIMDUTF
#include <simdutf.h>
#endif

#include <string>
#include <string_view>

namespace {

struct TextOfSet {
    char const* name;
    VynCharSet cs;
    char const* iconvName;
    char const* icuName; // null: ICU lacks the set
    char16_t const* sentence;
};

constexpr TextOfSet texts[] = {
    {"utf8-english", VYNCS_UTF8, "UTF-8", "UTF-8", english},
    {"utf8-french", VYNCS_UTF8, "UTF-8", "UTF-8", french},
    {"utf8-german", VYNCS_UTF8, "UTF-8", "UTF-8", german},
    {"utf8-russian", VYNCS_UTF8, "UTF-8", "UTF-8", russian},
    {"utf8-greek", VYNCS_UTF8, "UTF-8", "UTF-8", greek},
    {"utf8-arabic", VYNCS_UTF8, "UTF-8", "UTF-8", arabic},
    {"utf8-hebrew", VYNCS_UTF8, "UTF-8", "UTF-8", hebrew},
    {"utf8-chinese", VYNCS_UTF8, "UTF-8", "UTF-8", chinese},
    {"utf8-japanese", VYNCS_UTF8, "UTF-8", "UTF-8", japanese},
    {"utf8-thai", VYNCS_UTF8, "UTF-8", "UTF-8", thai},
    {"utf8-korean", VYNCS_UTF8, "UTF-8", "UTF-8", korean},
    {"utf8-emoji", VYNCS_UTF8, "UTF-8", "UTF-8", emoji},
    {"latin1-french", VYNCS_ISO_8859_1, "ISO-8859-1", "ISO-8859-1", french},
    {"1251-russian", VYNCS_WCP1251, "CP1251", "windows-1251", russian},
    {"1252-english", VYNCS_WCP1252, "CP1252", "windows-1252", english},
    {"1252-german", VYNCS_WCP1252, "CP1252", "windows-1252", german},
    {"koi8r-russian", VYNCS_KOI8R, "KOI8-R", "KOI8-R", russian},
    {"874-thai", VYNCS_WCP874, "CP874", "windows-874", thai},
    {"932-japanese", VYNCS_WCP932, "CP932", "ibm-943_P15A-2003", japanese},
    {"936-chinese", VYNCS_WCP936, "CP936", "windows-936", chinese},
    {"949-korean", VYNCS_WCP949, "CP949", "windows-949", korean},
    {"950-chinese", VYNCS_WCP950, "CP950", "windows-950", traditional},
    {"eucjp-japanese", VYNCS_EUC_JP, "EUC-JP", "EUC-JP", japanese},
    {"euccn-chinese", VYNCS_EUC_CN, "EUC-CN", "EUC-CN", chinese},
    {"euckr-korean", VYNCS_EUC_KR, "EUC-KR", "EUC-KR", korean},
    {"gb18030-chinese", VYNCS_GB18030, "GB18030", "gb18030", chinese},
    {"gb18030-korean", VYNCS_GB18030, "GB18030", "gb18030", korean},
    {"sjis0213-japanese", VYNCS_SJIS0213, "SHIFT_JISX0213", nullptr, japanese},
    {"932-english", VYNCS_WCP932, "CP932", "ibm-943_P15A-2003", english},
    {"936-english", VYNCS_WCP936, "CP936", "windows-936", english},
    {"949-english", VYNCS_WCP949, "CP949", "windows-949", english},
    {"950-english", VYNCS_WCP950, "CP950", "windows-950", english},
    {"eucjp-english", VYNCS_EUC_JP, "EUC-JP", "EUC-JP", english},
    {"gb18030-english", VYNCS_GB18030, "GB18030", "gb18030", english},
};

Samples samplesOf(benchmark::State const& state, TextOfSet const& text) {
    return {text.cs, text.sentence, static_cast<std::size_t>(state.range(0))};
}

void vynulibDecode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(text.cs);
    measure(state, samples, unitsOf, [&](Sample const& sample, char16_t* dst, std::size_t room) {
        return converter.toUTF16(reinterpret_cast<unsigned short*>(dst), sample.encoded.data(), room - 1,
                                 ILLCHAR_REPLACE, nullptr, -1);
    });
}

void vynulibEncode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(text.cs);
    measure(state, samples, encodedOf, [&](Sample const& sample, char* dst, std::size_t room) {
        auto const* const source = reinterpret_cast<unsigned short const*>(sample.units.data());
        return converter.fromUTF16(dst, source, room - 1, ILLCHAR_REPLACE, nullptr);
    });
}

void strictDecode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    measure(state, samples, unitsOf, [&](Sample const& sample, char16_t* dst, std::size_t room) {
        return vynulib::decode(text.cs, sample.encoded, dst, room, true).written;
    });
}

void strictEncode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    measure(state, samples, encodedOf, [&](Sample const& sample, char* dst, std::size_t room) {
        return vynulib::encode(text.cs, sample.units, dst, room, true).written;
    });
}

void icuDecode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    UErrorCode error = U_ZERO_ERROR;
    icu::LocalUConverterPointer const converter(ucnv_open(text.icuName, &error));
    measure(state, samples, unitsOf, [&](Sample const& sample, char16_t* dst, std::size_t room) {
        return ucnv_toUChars(converter.getAlias(), dst, static_cast<int>(room), sample.encoded.data(),
                             static_cast<int>(sample.encoded.size()), &error);
    });
}

void icuEncode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    UErrorCode error = U_ZERO_ERROR;
    icu::LocalUConverterPointer const converter(ucnv_open(text.icuName, &error));
    measure(state, samples, encodedOf, [&](Sample const& sample, char* dst, std::size_t room) {
        return ucnv_fromUChars(converter.getAlias(), dst, static_cast<int>(room), sample.units.data(),
                               static_cast<int>(sample.units.size()), &error);
    });
}

/// ICU's functions for UTF-8 alone.
void icuUtf8Decode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    UErrorCode error = U_ZERO_ERROR;
    measure(state, samples, unitsOf, [&](Sample const& sample, char16_t* dst, std::size_t room) {
        int length = 0;
        u_strFromUTF8(dst, static_cast<int>(room), &length, sample.encoded.data(),
                      static_cast<int>(sample.encoded.size()), &error);
        return length;
    });
}

void icuUtf8Encode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    UErrorCode error = U_ZERO_ERROR;
    measure(state, samples, encodedOf, [&](Sample const& sample, char* dst, std::size_t room) {
        int length = 0;
        u_strToUTF8(dst, static_cast<int>(room), &length, sample.units.data(), static_cast<int>(sample.units.size()),
                    &error);
        return length;
    });
}

#ifdef VYNULIB_SIMDUTF
void simdutfDecode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    measure(state, samples, unitsOf, [&](Sample const& sample, char16_t* dst, std::size_t /*room*/) {
        return simdutf::convert_utf8_to_utf16le(sample.encoded.data(), sample.encoded.size(), dst);
    });
}

void simdutfEncode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    measure(state, samples, encodedOf, [&](Sample const& sample, char* dst, std::size_t /*room*/) {
        return simdutf::convert_utf16le_to_utf8(sample.units.data(), sample.units.size(), dst);
    });
}
#endif

/// `handle` converts `source`; returns the elements written.
template <class Element>
std::size_t iconvWhole(iconv_t handle, std::string_view source, Element* dst, std::size_t room) {
    char* in = const_cast<char*>(source.data());
    char* out = reinterpret_cast<char*>(dst);
    std::size_t inLeft = source.size(), outLeft = room * sizeof(Element);
    iconv(handle, &in, &inLeft, &out, &outLeft);
    iconv(handle, nullptr, nullptr, &out, &outLeft); // a last character that might have combined with a next one
    return room - outLeft / sizeof(Element);
}

void iconvDecode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    iconv_t const handle = iconv_open("UTF-16LE", text.iconvName);
    measure(state, samples, unitsOf, [&](Sample const& sample, char16_t* dst, std::size_t room) {
        return iconvWhole(handle, sample.encoded, dst, room);
    });
    iconv_close(handle);
}

void iconvEncode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    iconv_t const handle = iconv_open(text.iconvName, "UTF-16LE");
    measure(state, samples, encodedOf, [&](Sample const& sample, char* dst, std::size_t room) {
        std::string_view const source(reinterpret_cast<char const*>(sample.units.data()), sample.units.size() * 2);
        return iconvWhole(handle, source, dst, room);
    });
    iconv_close(handle);
}

constexpr char const* otherName(TextOfSet const& text) {
    return otherSet(text.cs) == VYNCS_UTF8 ? "UTF-8" : "GB18030";
}

void strictTranscode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    measure(state, samples, otherOf, [&](Sample const& sample, char* dst, std::size_t room) {
        return vynulib::transcode(text.cs, otherSet(text.cs), sample.encoded, dst, room, true).written;
    });
}

using PartOfSample = std::string_view (*)(Sample const&);

void icuConvert(benchmark::State& state, Samples& samples, char const* from, PartOfSample source, char const* to,
                PartOfSample expected) {
    UErrorCode error = U_ZERO_ERROR;
    icu::LocalUConverterPointer const reader(ucnv_open(from, &error)), writer(ucnv_open(to, &error));
    measure(state, samples, expected, [&](Sample const& sample, char* dst, std::size_t room) {
        char* out = dst;
        char const* in = source(sample).data();
        ucnv_convertEx(writer.getAlias(), reader.getAlias(), &out, out + room, &in, in + source(sample).size(), nullptr,
                       nullptr, nullptr, nullptr, true, true, &error);
        return out - dst;
    });
}

void icuTranscode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    icuConvert(state, samples, text.icuName, encodedOf, otherName(text), otherOf);
}

void iconvTranscode(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    iconv_t const handle = iconv_open(otherName(text), text.iconvName);
    measure(state, samples, otherOf, [&](Sample const& sample, char* dst, std::size_t room) {
        return iconvWhole(handle, sample.encoded, dst, room);
    });
    iconv_close(handle);
}

void localToUtf8(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    measure(state, samples, otherOf, [&](Sample const& sample, char* dst, std::size_t room) {
        return LocalToUTF8(reinterpret_cast<unsigned char*>(dst), sample.encoded.data(), room, text.cs);
    });
}

void utf8ToLocal(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    measure(state, samples, encodedOf, [&](Sample const& sample, char* dst, std::size_t room) {
        return UTF8ToLocal(dst, reinterpret_cast<unsigned char const*>(sample.other.data()), room, text.cs);
    });
}

void icuFromUtf8(benchmark::State& state, TextOfSet const& text) {
    Samples samples = samplesOf(state, text);
    icuConvert(state, samples, otherName(text), otherOf, text.icuName, encodedOf);
}

using Which = bool (*)(TextOfSet const&);
constexpr bool every(TextOfSet const& /*text*/) {
    return true;
}
constexpr bool none(TextOfSet const& /*text*/) {
    return false;
}
constexpr bool inUtf8(TextOfSet const& text) {
    return text.cs == VYNCS_UTF8;
}
/// Text as the one-call functions meet it, where UTF-8 is not the locale's set.
constexpr bool inLocalSet(TextOfSet const& text) {
    return text.cs == VYNCS_WCP1251 || text.cs == VYNCS_WCP936;
}
constexpr bool icuHas(TextOfSet const& text) {
    return text.icuName != nullptr;
}
constexpr bool icuLacks(TextOfSet const& text) {
    return !icuHas(text);
}

struct Side {
    char const* name;
    void (*run)(benchmark::State&, TextOfSet const&);
    Which texts;
    Which inEverySize; // the others only in the middle ones
};
constexpr Side sides[] = {
    {"decode/vynulib", vynulibDecode, every, every},
    {"decode/strict", strictDecode, every, none},
    {"decode/icu", icuDecode, icuHas, every},
    {"decode/icu-utf8", icuUtf8Decode, inUtf8, every},
#ifdef VYNULIB_SIMDUTF
    {"decode/simdutf", simdutfDecode, inUtf8, none},
    {"encode/simdutf", simdutfEncode, inUtf8, none},
#endif
    {"decode/iconv", iconvDecode, every, icuLacks},
    {"encode/vynulib", vynulibEncode, every, every},
    {"encode/strict", strictEncode, every, none},
    {"encode/icu", icuEncode, icuHas, every},
    {"encode/icu-utf8", icuUtf8Encode, inUtf8, every},
    {"encode/iconv", iconvEncode, every, icuLacks},
    {"transcode/vynulib", strictTranscode, every, none},
    {"transcode/icu", icuTranscode, icuHas, none},
    {"transcode/iconv", iconvTranscode, every, none},
    {"LocalToUTF8/vynulib", localToUtf8, inLocalSet, every},
    {"LocalToUTF8/icu", icuTranscode, inLocalSet, every},
    {"UTF8ToLocal/vynulib", utf8ToLocal, inLocalSet, every},
    {"UTF8ToLocal/icu", icuFromUtf8, inLocalSet, every},
};

/// In bytes of the text's set.
constexpr long sizes[] = {1, 4, 8, 16, 24, 64, 4096, 1 << 20};

bool takesPart(Side const& side, TextOfSet const& text, long size) {
    if (!side.texts(text))
        return false;
    if (size == 64 || size == 4096)
        return true;
    return side.inEverySize(text) && (size > 4096 || text.sentence == english);
}

} // namespace

int main(int argc, char** argv) {
    // What is compared runs close together, as a machine is not always equally fast.
    for (TextOfSet const& text : texts)
        for (long const size : sizes)
            for (Side const& side : sides)
                if (takesPart(side, text, size))
                    benchmark::RegisterBenchmark((std::string(text.name) + '/' + side.name).c_str(),
                                                 [&](benchmark::State& state) { side.run(state, text); })
                        ->Arg(size);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
