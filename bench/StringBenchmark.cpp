// The string class beside icu::UnicodeString and std::u16string. The throughput counts units.

#include <vynulib/VynUStringList.h>

#include <benchmark/benchmark.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr char16_t word[] = u"слово, 言葉, word; ";
constexpr char16_t absentUnit = 0x2400;

/// A text of `length` units, in lines of forty, with "needle" only at its end.
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

// The operations of the classes under one name.
struct Ours {
    using String = VynUString;
    static String make(std::u16string const& text) { return VynUString(text); }
    static String decode(std::string const& utf8) { return VynUString(utf8.c_str(), VYNCS_UTF8); }
    static char const* encode(String& text) {
        text.freeSecText(); // as a change of the text does: no bytes of the last round are left to hand out
        return text.c_str(VYNCS_UTF8);
    }
    static void setUnit(String& text, unsigned long pos, char16_t unit) { text.at(pos) = unit; }
    static void replace(String& text, unsigned long pos, unsigned long count, String const& by) {
        text.replace(pos, count, by, 0);
    }
    static unsigned long find(String const& text, String const& needle) { return text.find(needle); }
    static unsigned long findUnit(String const& text, char16_t unit) { return text.find(unit); }
    static int compareNoCase(String const& a, String const& b) { return a.compareNoCase(b); }
    static void toUpper(String& text) { text.toUpper(false); }
    static unsigned long split(String const& text) { return text.split(u'\n').size(); }
};

struct Icu {
    using String = icu::UnicodeString;
    static String make(std::u16string const& text) { return String(text.data(), static_cast<int>(text.size())); }
    static String decode(std::string const& utf8) { return String::fromUTF8(utf8); }
    static std::string encode(String const& text) {
        std::string utf8;
        return text.toUTF8String(utf8);
    }
    static void setUnit(String& text, unsigned long pos, char16_t unit) { text.setCharAt(static_cast<int>(pos), unit); }
    static void replace(String& text, unsigned long pos, unsigned long count, String const& by) {
        text.replace(static_cast<int>(pos), static_cast<int>(count), by);
    }
    static int find(String const& text, String const& needle) { return text.indexOf(needle); }
    static int findUnit(String const& text, char16_t unit) { return text.indexOf(unit); }
    static int compareNoCase(String const& a, String const& b) { return a.caseCompare(b, U_FOLD_CASE_DEFAULT); }
    static void toUpper(String& text) { text.toUpper(icu::Locale::getRoot()); }
};

/// With ICU's functions for UTF-8.
struct Standard {
    using String = std::u16string;
    static String make(std::u16string const& text) { return text; }
    static String decode(std::string const& utf8) {
        UErrorCode error = U_ZERO_ERROR;
        int length = 0;
        String text(utf8.size(), u'\0');
        u_strFromUTF8(text.data(), static_cast<int>(text.size()), &length, utf8.data(), static_cast<int>(utf8.size()),
                      &error);
        text.erase(static_cast<unsigned>(length));
        return text;
    }
    static std::string encode(String const& text) {
        UErrorCode error = U_ZERO_ERROR;
        int length = 0;
        std::string utf8(3 * text.size(), '\0');
        u_strToUTF8(utf8.data(), static_cast<int>(utf8.size()), &length, text.data(), static_cast<int>(text.size()),
                    &error);
        utf8.erase(static_cast<unsigned>(length));
        return utf8;
    }
    static void setUnit(String& text, unsigned long pos, char16_t unit) { text[pos] = unit; }
    static void replace(String& text, unsigned long pos, unsigned long count, String const& by) {
        text.replace(pos, count, by);
    }
    static unsigned long find(String const& text, String const& needle) { return text.find(needle); }
    static unsigned long findUnit(String const& text, char16_t unit) { return text.find(unit); }
    static unsigned long split(String const& text) {
        std::vector<String> fields;
        unsigned long start = 0;
        for (unsigned long end; (end = text.find(u'\n', start)) != String::npos; start = end + 1)
            fields.push_back(text.substr(start, end - start));
        if (start < text.size())
            fields.push_back(text.substr(start));
        return fields.size();
    }
};

std::u16string textOf(benchmark::State const& state) {
    return makeText(static_cast<unsigned long>(state.range(0)));
}

std::string utf8Of(benchmark::State const& state) {
    return Standard::encode(textOf(state));
}

template <class Operation>
void measure(benchmark::State& state, Operation operation) {
    for (auto _ : state)
        benchmark::DoNotOptimize(operation());
    state.SetItemsProcessed(state.range(0) * state.iterations());
}

template <class Api>
void construct(benchmark::State& state) {
    std::string const utf8 = utf8Of(state);
    measure(state, [&] { return Api::decode(utf8); });
}

/// Into bytes of its own each time.
template <class Api>
void render(benchmark::State& state) {
    auto text = Api::make(textOf(state));
    measure(state, [&] { return Api::encode(text); });
}

/// A copy and a change of it, before which ICU's two strings share one text.
template <class Api>
void copy(benchmark::State& state) {
    auto const text = Api::make(textOf(state));
    measure(state, [&] {
        auto changed = text;
        Api::setUnit(changed, 0, absentUnit);
        return changed;
    });
}

/// Two halves into a new string.
template <class Api>
void concatenate(benchmark::State& state) {
    auto const half = Api::make(makeText(static_cast<unsigned long>(state.range(0)) / 2));
    measure(state, [&] { return half + half; });
}

template <class Api>
void find(benchmark::State& state) {
    auto const text = Api::make(textOf(state)), needle = Api::make(u"needle");
    measure(state, [&] { return Api::find(text, needle); });
}

template <class Api>
void findUnit(benchmark::State& state) {
    auto const text = Api::make(textOf(state));
    measure(state, [&] { return Api::findUnit(text, absentUnit); });
}

/// Equal texts in two strings.
template <class Api>
void equal(benchmark::State& state) {
    auto const a = Api::make(textOf(state)), b = Api::make(textOf(state));
    measure(state, [&] { return a == b; });
}

template <class Api>
void compare(benchmark::State& state) {
    auto const a = Api::make(textOf(state)), b = Api::make(textOf(state));
    measure(state, [&] { return a.compare(b); });
}

/// A text and its upper case.
template <class Api>
void compareNoCase(benchmark::State& state) {
    auto const lower = Api::make(textOf(state));
    auto upper = lower;
    Api::toUpper(upper);
    measure(state, [&] { return Api::compareNoCase(lower, upper); });
}

/// Of a new copy each time.
template <class Api>
void toUpper(benchmark::State& state) {
    auto const lower = Api::make(textOf(state));
    measure(state, [&] {
        auto upper = lower;
        Api::toUpper(upper);
        return upper;
    });
}

/// In the middle, by a text one unit longer and one shorter in turn: half of the text moves.
template <class Api>
void replaceInMiddle(benchmark::State& state) {
    auto text = Api::make(textOf(state));
    auto const middle = static_cast<unsigned long>(state.range(0)) / 2;
    auto const four = Api::make(u"four"), five = Api::make(u"fives");
    measure(state, [&] {
        Api::replace(text, middle, 4, five);
        Api::replace(text, middle, 5, four);
        return &text;
    });
}

template <class Api>
void splitLines(benchmark::State& state) {
    auto const text = Api::make(textOf(state));
    measure(state, [&] { return Api::split(text); });
}

struct Side {
    char const* name;
    void (*run)(benchmark::State&);
};
constexpr Side sides[] = {
    {"construct/vynulib", construct<Ours>},
    {"construct/icu", construct<Icu>},
    {"construct/std", construct<Standard>},
    {"render/vynulib", render<Ours>},
    {"render/icu", render<Icu>},
    {"render/std", render<Standard>},
    {"copy/vynulib", copy<Ours>},
    {"copy/icu", copy<Icu>},
    {"copy/std", copy<Standard>},
    {"concatenate/vynulib", concatenate<Ours>},
    {"concatenate/icu", concatenate<Icu>},
    {"concatenate/std", concatenate<Standard>},
    {"find/vynulib", find<Ours>},
    {"find/icu", find<Icu>},
    {"find/std", find<Standard>},
    {"find-unit/vynulib", findUnit<Ours>},
    {"find-unit/icu", findUnit<Icu>},
    {"find-unit/std", findUnit<Standard>},
    {"equal/vynulib", equal<Ours>},
    {"equal/icu", equal<Icu>},
    {"equal/std", equal<Standard>},
    {"compare/vynulib", compare<Ours>},
    {"compare/icu", compare<Icu>},
    {"compare/std", compare<Standard>},
    {"compare-no-case/vynulib", compareNoCase<Ours>},
    {"compare-no-case/icu", compareNoCase<Icu>},
    {"to-upper/vynulib", toUpper<Ours>},
    {"to-upper/icu", toUpper<Icu>},
    {"replace/vynulib", replaceInMiddle<Ours>},
    {"replace/icu", replaceInMiddle<Icu>},
    {"replace/std", replaceInMiddle<Standard>},
    {"split/vynulib", splitLines<Ours>},
    {"split/std", splitLines<Standard>},
};

} // namespace

int main(int argc, char** argv) {
    // Not 2,048 units: memcpy is many times as slow between blocks that stand a little more than 4 KiB apart.
    for (long const units : {1'000, 2'000, 100'000, 10'000'000})
        for (Side const& side : sides)
            benchmark::RegisterBenchmark((std::string("string/") + side.name).c_str(), side.run)->Arg(units);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
