// Text that only an attacker writes, beside plain text of as many elements: the throughput counts elements, and each row of
// a set should come near to that of its plain text.

#include <vynulib/Transcoding.h>
#include <vynulib/VynCharSetConverter.h>

#include <benchmark/benchmark.h>

#include <string>

namespace {

constexpr std::size_t elements = 4096;

template <class String>
String repeated(String const& part) {
    String text;
    while (text.size() < elements)
        text += part;
    text.resize(elements);
    return text;
}

struct Bytes {
    char const* name;
    VynCharSet cs;
    char const* part;
};
constexpr Bytes sources[] = {
    {"utf8/plain", VYNCS_UTF8, "日"},
    {"utf8/malformed", VYNCS_UTF8, "\xFF"},
    {"utf8/every-other-malformed", VYNCS_UTF8, "a\xFF"},
    {"utf8/cut-off", VYNCS_UTF8, "\xE6\x97"},
    {"932/plain", VYNCS_WCP932, "\x93\xFA"},
    {"932/unmapped", VYNCS_WCP932, "\x87\x40"},
    {"932/every-other-lead-alone", VYNCS_WCP932, "\x93!"},
    {"gb18030/plain", VYNCS_GB18030, "\xC8\xD5"},
    {"gb18030/cut-off", VYNCS_GB18030, "\x81\x30\x81"},
    {"koi8r/plain", VYNCS_KOI8R, "\xC1"},
};

struct Units {
    char const* name;
    VynCharSet cs;
    std::u16string part;
};
Units const targets[] = {
    {"utf8/plain", VYNCS_UTF8, u"日"},
    {"utf8/lone-surrogates", VYNCS_UTF8, {0xD800}},
    {"utf8/every-other-surrogate", VYNCS_UTF8, {u'日', 0xD800}},
    {"932/plain", VYNCS_WCP932, u"日"},
    {"932/not-in-the-set", VYNCS_WCP932, u"é"},
    {"gb18030/plain", VYNCS_GB18030, u"日"},
    {"gb18030/low-surrogates", VYNCS_GB18030, {0xDC00}},
    {"koi8r/plain", VYNCS_KOI8R, u"д"},
    {"koi8r/not-in-the-set", VYNCS_KOI8R, u"日"},
    {"koi8r/every-other-not-in-the-set", VYNCS_KOI8R, u"д日"},
};

template <class Convert>
void measure(benchmark::State& state, Convert convert) {
    for (auto _ : state)
        benchmark::DoNotOptimize(convert());
    state.SetItemsProcessed(state.iterations() * static_cast<long>(elements));
}

void decode(benchmark::State& state, Bytes const& source) {
    std::string const text = repeated<std::string>(source.part);
    std::u16string units(elements + 1, u'\0');
    auto* const dst = reinterpret_cast<unsigned short*>(units.data());
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(source.cs);
    measure(state, [&] { return converter.toUTF16(dst, text.c_str(), elements, ILLCHAR_REPLACE, nullptr, -1); });
}
void decodeStrictly(benchmark::State& state, Bytes const& source) {
    std::string const text = repeated<std::string>(source.part);
    measure(state, [&] { return vynulib::decode(source.cs, text); });
}
void encode(benchmark::State& state, Units const& target) {
    std::u16string const text = repeated(target.part);
    auto const* const src = reinterpret_cast<unsigned short const*>(text.c_str());
    std::string bytes(4 * elements + 1, '\0');
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(target.cs);
    measure(state, [&] { return converter.fromUTF16(bytes.data(), src, 4 * elements, ILLCHAR_REPLACE, nullptr); });
}
void encodeStrictly(benchmark::State& state, Units const& target) {
    std::u16string const text = repeated(target.part);
    measure(state, [&] { return vynulib::encode(target.cs, text); });
}

template <class Row>
struct Side {
    char const* name;
    void (*run)(benchmark::State&, Row const&);
};
constexpr Side<Bytes> decoders[] = {{"decode/vynulib/", decode}, {"decode/strict/", decodeStrictly}};
constexpr Side<Units> encoders[] = {{"encode/vynulib/", encode}, {"encode/strict/", encodeStrictly}};

} // namespace

int main(int argc, char** argv) {
    for (Bytes const& source : sources)
        for (Side<Bytes> const& side : decoders)
            benchmark::RegisterBenchmark((std::string(side.name) + source.name).c_str(),
                                         [&](benchmark::State& state) { side.run(state, source); });
    for (Units const& target : targets)
        for (Side<Units> const& side : encoders)
            benchmark::RegisterBenchmark((std::string(side.name) + target.name).c_str(),
                                         [&](benchmark::State& state) { side.run(state, target); });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
