// Texts in a set and in UTF-16, and the loop in which each side converts them.
#pragma once

#include <vynulib/VynCharSet.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

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

/// The words of a sentence in random order, as a text that repeats itself would teach the branch predictor its every turn.
struct Sample {
    /// As few characters as make `bytes` bytes. One that the set lacks stands in `encoded` as an escape, which no
    /// conversion makes of it or takes for it.
    Sample(VynCharSet cs, char16_t const* sentence, std::size_t bytes);

    std::u16string units;
    std::string encoded;
};

/// Runs `convert(dst, room)`, which writes at most `room` elements and returns their number, and checks what it wrote.
/// The throughput counts bytes of the sample's set in both directions, so that the rows of one text compare directly.
template <class Text, class Convert>
void measure(benchmark::State& state, Sample const& sample, Text const& expected, Convert convert) {
    Text result(sample.units.size() * 4 + 4, 0); // none of the sets takes more bytes for a unit
    std::size_t length = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(length = static_cast<std::size_t>(convert(result.data(), result.size())));
    result.resize(length);
    if (result != expected)
        state.SkipWithError("the result is another text");
    state.SetBytesProcessed(state.iterations() * static_cast<long>(sample.encoded.size()));
}
