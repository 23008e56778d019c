// The string class beside std::u16string, at a thousand, a hundred thousand and ten million units.

#include <vynulib/VynUStringList.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr char16_t word[] = u"слово, 言葉, word; ";

// A text of `length` units, in lines of forty, with "needle" only at its end.
std::u16string makeText(unsigned long length) {
    std::u16string text;
    while (text.size() < length) {
        while (text.size() % 40 < 39)
            text += word[text.size() % (std::size(word) - 1)];
        text += u'\n';
    }
    text.resize(length - 6);
    return text + u"needle";
}

// The operations of both classes under one name.
struct Ours {
    using String = VynUString;
    static String make(std::u16string const& text) {
        std::vector<unsigned short> const units(text.begin(), text.end());
        return String(units.data(), units.data() + units.size());
    }
    static void replace(String& text, unsigned long pos, unsigned long count, String const& by) {
        text.replace(pos, count, by, 0);
    }
    static unsigned long split(String const& text) { return text.split(static_cast<unsigned short>('\n')).size(); }
    static unsigned long findUnit(String const& text) { return text.find(static_cast<unsigned short>(0x2400)); }
};

struct Standard {
    using String = std::u16string;
    static String make(std::u16string const& text) { return text; }
    static void replace(String& text, unsigned long pos, unsigned long count, String const& by) {
        text.replace(pos, count, by);
    }
    static unsigned long split(String const& text) {
        std::vector<String> fields;
        unsigned long start = 0;
        for (unsigned long end; (end = text.find(u'\n', start)) != String::npos; start = end + 1)
            fields.push_back(text.substr(start, end - start));
        if (start < text.size())
            fields.push_back(text.substr(start));
        return fields.size();
    }
    static unsigned long findUnit(String const& text) { return text.find(u'\x2400'); }
};

void countUnits(benchmark::State& state, unsigned long unitsPerRound) {
    state.SetItemsProcessed(static_cast<std::int64_t>(unitsPerRound) * state.iterations());
}

// Two halves into a new string.
template <class Api>
void concatenate(benchmark::State& state) {
    auto const length = static_cast<unsigned long>(state.range(0));
    auto const half = Api::make(makeText(length / 2));
    for (auto _ : state)
        benchmark::DoNotOptimize(half + half);
    countUnits(state, length);
}

template <class Api>
void searchString(benchmark::State& state) {
    auto const length = static_cast<unsigned long>(state.range(0));
    auto const text = Api::make(makeText(length)), needle = Api::make(u"needle");
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(needle));
    countUnits(state, length);
}

template <class Api>
void searchUnit(benchmark::State& state) {
    auto const length = static_cast<unsigned long>(state.range(0));
    auto const text = Api::make(makeText(length));
    for (auto _ : state)
        benchmark::DoNotOptimize(Api::findUnit(text));
    countUnits(state, length);
}

// In the middle, by a text one unit longer and one shorter in turn: half of the text moves.
template <class Api>
void replaceInMiddle(benchmark::State& state) {
    auto const length = static_cast<unsigned long>(state.range(0));
    auto text = Api::make(makeText(length));
    auto const four = Api::make(u"four"), five = Api::make(u"fives");
    for (auto _ : state) {
        Api::replace(text, length / 2, 4, five);
        Api::replace(text, length / 2, 5, four);
        benchmark::ClobberMemory();
    }
    countUnits(state, length);
}

template <class Api>
void splitLines(benchmark::State& state) {
    auto const length = static_cast<unsigned long>(state.range(0));
    auto const text = Api::make(makeText(length));
    for (auto _ : state)
        benchmark::DoNotOptimize(Api::split(text));
    countUnits(state, length);
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1'000)->Arg(100'000)->Arg(10'000'000);
}

BENCHMARK_TEMPLATE(concatenate, Ours)->Apply(sizes);
BENCHMARK_TEMPLATE(concatenate, Standard)->Apply(sizes);
BENCHMARK_TEMPLATE(searchString, Ours)->Apply(sizes);
BENCHMARK_TEMPLATE(searchString, Standard)->Apply(sizes);
BENCHMARK_TEMPLATE(searchUnit, Ours)->Apply(sizes);
BENCHMARK_TEMPLATE(searchUnit, Standard)->Apply(sizes);
BENCHMARK_TEMPLATE(replaceInMiddle, Ours)->Apply(sizes);
BENCHMARK_TEMPLATE(replaceInMiddle, Standard)->Apply(sizes);
BENCHMARK_TEMPLATE(splitLines, Ours)->Apply(sizes);
BENCHMARK_TEMPLATE(splitLines, Standard)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
