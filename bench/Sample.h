// Texts in a set and in UTF-16, and the loop in which each side converts them.
#pragma once

#include <vynulib/VynCharSet.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

constexpr char16_t english[] = u"The quick brown fox jumps over the lazy dog, and back again. ";
constexpr char16_t french[] =
    u"Tous les êtres humains naissent libres et égaux en dignité et en droits. Ils sont doués de "
    u"raison et de conscience et doivent agir dans un esprit de fraternité. ";
constexpr char16_t german[] = u"Falsches Üben von Xylophonmusik quält jeden größeren Zwerg. ";
constexpr char16_t russian[] = u"Съешь же ещё этих мягких французских булок, да выпей чаю. ";
constexpr char16_t greek[] = u"Όλοι οι άνθρωποι γεννιούνται ελεύθεροι και ίσοι στην αξιοπρέπεια και τα δικαιώματα. ";
constexpr char16_t arabic[] = u"يولد جميع الناس أحرارا متساوين في الكرامة والحقوق. وقد وهبوا عقلا وضميرا. ";
constexpr char16_t hebrew[] = u"כל בני אדם נולדו בני חורין ושווים בערכם ובזכויותיהם. כולם חוננו בתבונה ובמצפון. ";
constexpr char16_t chinese[] = u"天地玄黄，宇宙洪荒。日月盈昃，辰宿列张。寒来暑往，秋收冬藏。";
constexpr char16_t traditional[] =
    u"人人生而自由，在尊嚴和權利上一律平等。他們賦有理性和良心，並應以兄弟關係的精神相對待。";
constexpr char16_t japanese[] = u"いろはにほへと ちりぬるを。我が世誰ぞ常ならむ、有為の奥山今日越えて。";
constexpr char16_t thai[] = u"มนุษย์ทั้งหลายเกิดมามีอิสระและเสมอภาคกันในเกียรติศักดิ์และสิทธิ ต่างมีเหตุผลและมโนธรรม "
                            u"และควรปฏิบัติต่อกันด้วยเจตนารมณ์แห่งภราดรภาพ ";
constexpr char16_t korean[] = u"다람쥐 헌 쳇바퀴에 타고파. 키스의 고유 조건은 입술끼리 만나야 한다. ";
constexpr char16_t emoji[] = u"😀😁😂🤣😃😄😅😆😉😊";

/// The other byte set of a conversion without UTF-16 at either end.
constexpr VynCharSet otherSet(VynCharSet cs) {
    return cs == VYNCS_UTF8 ? VYNCS_GB18030 : VYNCS_UTF8;
}

/// A text in a set. A terminator stands behind each form.
struct Sample {
    std::u16string_view units;
    std::string_view
        encoded; ///< A character that the set lacks is an escape, which no conversion makes of it or takes for it.
    std::string_view other; ///< The same in `otherSet`.
};

/// Texts of one size: the words of a sentence in random order. They take turns, as one text again and again would teach
/// the branch predictor its every turn, and lie one behind the other, as texts picked from all over would be waited for.
class Samples {
public:
    /// As few characters in each as make `bytes` bytes.
    Samples(VynCharSet cs, char16_t const* sentence, std::size_t bytes);
    Samples(Samples const&) = delete;
    Samples& operator=(Samples const&) = delete;

    /// For ever.
    Sample const& next() {
        if (++m_at == m_samples.size())
            m_at = 0;
        return m_samples[m_at];
    }

    std::vector<Sample> const& all() const { return m_samples; }
    std::size_t bytes() const { return m_samples[0].encoded.size(); }

private:
    std::u16string m_units;
    std::string m_encoded, m_other;
    std::vector<Sample> m_samples; // of these
    std::size_t m_at = 0;
};

/// Runs `convert(sample, dst, room)`, which writes at most `room` elements and returns their number, and checks that it makes
/// `expected(sample)` of each. The throughput counts bytes of the samples' set in both directions, so that the rows of one
/// text compare directly.
template <class Expected, class Convert>
void measure(benchmark::State& state, Samples& samples, Expected expected, Convert convert) {
    using Element = typename decltype(expected(samples.next()))::value_type;
    std::basic_string<Element> result(samples.bytes() * 4 + 4, 0); // none of the sets takes more for a byte
    for (auto _ : state)
        benchmark::DoNotOptimize(convert(samples.next(), result.data(), result.size()));
    bool const asExpected = std::all_of(samples.all().begin(), samples.all().end(), [&](Sample const& sample) {
        auto const length = static_cast<std::size_t>(convert(sample, result.data(), result.size()));
        return std::basic_string_view(result.data(), length) == expected(sample);
    });
    if (!asExpected)
        state.SkipWithError("the result is another text");
    state.SetBytesProcessed(state.iterations() * static_cast<long>(samples.bytes()));
}

inline std::u16string_view unitsOf(Sample const& sample) {
    return sample.units;
}
inline std::string_view encodedOf(Sample const& sample) {
    return sample.encoded;
}
inline std::string_view otherOf(Sample const& sample) {
    return sample.other;
}
