// Conversion beside ICU and the C library's iconv, each on the same text in one run. The throughput counts bytes of the
// byte side, so that the rows of one text compare directly.

#include <vynulib/Transcoding.h>
#include <vynulib/VynCharSetConverter.h>

#include <benchmark/benchmark.h>
#include <iconv.h>
#include <unicode/ucnv.h>

#include <random>
#include <string>
#include <vector>

namespace {

struct TextOfSet {
    char const* name;
    VynCharSet cs;
    char const* iconvName;
    char const* icuName;
    char16_t const* sentence;
};

constexpr char16_t english[] = u"The quick brown fox jumps over the lazy dog, and back again. ";
constexpr char16_t german[] = u"Falsches Üben von Xylophonmusik quält jeden größeren Zwerg. ";
constexpr char16_t russian[] = u"Съешь же ещё этих мягких французских булок, да выпей чаю. ";
constexpr char16_t chinese[] = u"天地玄黄，宇宙洪荒。日月盈昃，辰宿列张。寒来暑往，秋收冬藏。";
constexpr char16_t japanese[] = u"いろはにほへと ちりぬるを。我が世誰ぞ常ならむ、有為の奥山今日越えて。";
constexpr char16_t korean[] = u"다람쥐 헌 쳇바퀴에 타고파. 키스의 고유 조건은 입술끼리 만나야 한다. ";
constexpr char16_t emoji[] = u"😀😁😂🤣😃😄😅😆😉😊";

constexpr TextOfSet texts[] = {
    {"utf8-english", VYNCS_UTF8, "UTF-8", "UTF-8", english},
    {"utf8-german", VYNCS_UTF8, "UTF-8", "UTF-8", german},
    {"utf8-russian", VYNCS_UTF8, "UTF-8", "UTF-8", russian},
    {"utf8-chinese", VYNCS_UTF8, "UTF-8", "UTF-8", chinese},
    {"utf8-emoji", VYNCS_UTF8, "UTF-8", "UTF-8", emoji},
    {"1252-german", VYNCS_WCP1252, "CP1252", "windows-1252", german},
    {"koi8r-russian", VYNCS_KOI8R, "KOI8-R", "KOI8-R", russian},
    {"932-japanese", VYNCS_WCP932, "CP932", "ibm-943_P15A-2003", japanese},
    {"936-chinese", VYNCS_WCP936, "CP936", "windows-936", chinese},
    {"949-korean", VYNCS_WCP949, "CP949", "windows-949", korean},
    {"eucjp-japanese", VYNCS_EUC_JP, "EUC-JP", "EUC-JP", japanese},
    {"gb18030-chinese", VYNCS_GB18030, "GB18030", "gb18030", chinese},
    {"932-english", VYNCS_WCP932, "CP932", "ibm-943_P15A-2003", english},
    {"949-english", VYNCS_WCP949, "CP949", "windows-949", english},
    {"gb18030-english", VYNCS_GB18030, "GB18030", "gb18030", english},
    {"eucjp-english", VYNCS_EUC_JP, "EUC-JP", "EUC-JP", english},
};

/// At least `bytes` bytes of the text in its set, and the same in UTF-16: its words in random order, as a text that
/// repeats itself would teach the branch predictor its every turn.
struct Sample {
    Sample(TextOfSet const& text, std::size_t bytes) {
        VynCharSetConverter& converter = *VynCharSetConverter::getConverter(text.cs);
        std::vector<std::u16string> words(1);
        for (char16_t const* unit = text.sentence; *unit != 0; ++unit) {
            words.back() += *unit;
            if (*unit == u' ' && unit[1] != 0)
                words.emplace_back();
        }
        std::mt19937 random(1);
        while (encoded.size() < bytes) {
            units += words[random() % words.size()];
            auto const* const source = reinterpret_cast<unsigned short const*>(units.c_str());
            encoded.resize(converter.getNumBytes(source, units.size()) + 4);
            encoded.resize(converter.fromUTF16(encoded.data(), source, encoded.size() - 4, ILLCHAR_STOP, nullptr));
        }
    }

    std::u16string units;
    std::string encoded;
};

void report(benchmark::State& state, Sample const& sample) {
    state.SetBytesProcessed(state.iterations() * static_cast<long>(sample.encoded.size()));
}

void vynulibDecode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(text.cs);
    std::vector<unsigned short> dst(sample.encoded.size() + 1);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            converter.toUTF16(dst.data(), sample.encoded.c_str(), sample.encoded.size(), ILLCHAR_REPLACE, nullptr, -1));
    report(state, sample);
}

void vynulibEncode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(text.cs);
    std::string dst(sample.units.size() * 4 + 1, '\0');
    auto const* const source = reinterpret_cast<unsigned short const*>(sample.units.c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(converter.fromUTF16(dst.data(), source, dst.size() - 1, ILLCHAR_REPLACE, nullptr));
    report(state, sample);
}

void strictDecode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    std::u16string dst(vynulib::maxUnits(text.cs, sample.encoded.size()), u'\0');
    for (auto _ : state)
        if (vynulib::decode(text.cs, sample.encoded, dst.data(), dst.size(), true).status != vynulib::Status::done)
            state.SkipWithError("a loss");
    report(state, sample);
}

void strictEncode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    std::string dst(vynulib::maxBytes(text.cs, sample.units.size()), '\0');
    for (auto _ : state)
        if (vynulib::encode(text.cs, sample.units, dst.data(), dst.size(), true).status != vynulib::Status::done)
            state.SkipWithError("a loss");
    report(state, sample);
}

/// The other byte set of a conversion without UTF-16 at either end.
constexpr VynCharSet otherSet(TextOfSet const& text) {
    return text.cs == VYNCS_UTF8 ? VYNCS_GB18030 : VYNCS_UTF8;
}
constexpr char const* otherName(TextOfSet const& text) {
    return text.cs == VYNCS_UTF8 ? "GB18030" : "UTF-8";
}

void strictTranscode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(vynulib::transcode(text.cs, otherSet(text), sample.encoded));
    report(state, sample);
}

void icuTranscode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    UErrorCode error = U_ZERO_ERROR;
    UConverter *const from = ucnv_open(text.icuName, &error), *const to = ucnv_open(otherName(text), &error);
    std::string dst(sample.units.size() * 4 + 4, '\0');
    for (auto _ : state) {
        char* out = dst.data();
        char const* in = sample.encoded.data();
        ucnv_convertEx(to, from, &out, out + dst.size(), &in, in + sample.encoded.size(), nullptr, nullptr, nullptr,
                       nullptr, true, true, &error);
    }
    if (U_FAILURE(error))
        state.SkipWithError(u_errorName(error));
    ucnv_close(from);
    ucnv_close(to);
    report(state, sample);
}

void iconvConvert(benchmark::State& state, Sample const& sample, char const* to, char const* from,
                  std::string_view source) {
    iconv_t const handle = iconv_open(to, from);
    std::string dst(sample.units.size() * 4 + 4, '\0');
    for (auto _ : state) {
        char* in = const_cast<char*>(source.data());
        char* out = dst.data();
        std::size_t inLeft = source.size();
        std::size_t outLeft = dst.size();
        if (iconv(handle, &in, &inLeft, &out, &outLeft) != 0)
            state.SkipWithError("iconv");
    }
    iconv_close(handle);
    report(state, sample);
}

void iconvDecode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    iconvConvert(state, sample, "UTF-16LE", text.iconvName, sample.encoded);
}

void iconvEncode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    iconvConvert(state, sample, text.iconvName, "UTF-16LE",
                 {reinterpret_cast<char const*>(sample.units.data()), sample.units.size() * 2});
}

void iconvTranscode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    iconvConvert(state, sample, otherName(text), text.iconvName, sample.encoded);
}

void icuDecode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    UErrorCode error = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(text.icuName, &error);
    std::u16string dst(sample.encoded.size() + 1, u'\0');
    for (auto _ : state)
        benchmark::DoNotOptimize(ucnv_toUChars(converter, dst.data(), static_cast<int>(dst.size()),
                                               sample.encoded.data(), static_cast<int>(sample.encoded.size()), &error));
    if (U_FAILURE(error))
        state.SkipWithError(u_errorName(error));
    ucnv_close(converter);
    report(state, sample);
}

void icuEncode(benchmark::State& state, TextOfSet const& text) {
    Sample const sample(text, static_cast<std::size_t>(state.range(0)));
    UErrorCode error = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(text.icuName, &error);
    std::string dst(sample.units.size() * 4 + 1, '\0');
    for (auto _ : state)
        benchmark::DoNotOptimize(ucnv_fromUChars(converter, dst.data(), static_cast<int>(dst.size()),
                                                 sample.units.data(), static_cast<int>(sample.units.size()), &error));
    if (U_FAILURE(error))
        state.SkipWithError(u_errorName(error));
    ucnv_close(converter);
    report(state, sample);
}

} // namespace

int main(int argc, char** argv) {
    using Run = void (*)(benchmark::State&, TextOfSet const&);
    struct Side {
        char const* name;
        Run run;
    };
    constexpr Side sides[] = {
        {"decode/vynulib", vynulibDecode}, {"decode/strict", strictDecode},    {"decode/icu", icuDecode},
        {"decode/iconv", iconvDecode},     {"encode/vynulib", vynulibEncode},  {"encode/strict", strictEncode},
        {"encode/icu", icuEncode},         {"encode/iconv", iconvEncode},      {"transcode/vynulib", strictTranscode},
        {"transcode/icu", icuTranscode},   {"transcode/iconv", iconvTranscode}};
    for (TextOfSet const& text : texts)
        for (Side const& side : sides)
            benchmark::RegisterBenchmark((std::string(text.name) + '/' + side.name).c_str(),
                                         [&text, run = side.run](benchmark::State& state) { run(state, text); })
                ->Arg(64)
                ->Arg(4096);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
