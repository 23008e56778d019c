#include "Sample.h"

#include <vynulib/Transcoding.h>

#include <algorithm>
#include <random>
#include <string_view>
#include <vector>

namespace {

std::string encodeOrEscape(VynCharSet cs, std::u16string_view units) {
    return vynulib::encode(cs, units, vynulib::OnError::escape);
}

struct Word {
    std::u16string_view units;
    std::string encoded;
};

struct Text {
    std::u16string units;
    std::string encoded;
};

/// A word ends behind the blank or the mark that separates it from the next.
std::vector<Word> wordsOf(VynCharSet cs, std::u16string_view sentence) {
    std::vector<Word> words;
    while (!sentence.empty()) {
        std::size_t const separator = std::min(sentence.find_first_of(u" ，。、"), sentence.size() - 1);
        std::u16string_view const units = sentence.substr(0, separator + 1);
        words.push_back({units, encodeOrEscape(cs, units)});
        sentence.remove_prefix(units.size());
    }
    return words;
}

std::u16string_view lastCharacter(std::u16string_view text) {
    bool const pair = text.size() > 1 && text.back() >= 0xDC00 && text.back() <= 0xDFFF;
    return text.substr(text.size() - (pair ? 2 : 1));
}

/// As few characters as make `bytes` bytes.
Text makeText(VynCharSet cs, std::vector<Word> const& words, std::size_t bytes, std::mt19937& random) {
    Text made;
    while (made.encoded.size() < bytes) {
        Word const& word = words[random() % words.size()];
        made.units += word.units;
        made.encoded += word.encoded;
    }
    for (;;) {
        std::u16string_view const last = lastCharacter(made.units);
        std::size_t const length = encodeOrEscape(cs, last).size();
        if (made.encoded.size() - length < bytes)
            return made;
        made.units.erase(made.units.size() - last.size());
        made.encoded.erase(made.encoded.size() - length);
    }
}

} // namespace

Samples::Samples(VynCharSet cs, char16_t const* sentence, std::size_t bytes) {
    constexpr std::size_t bytesOfAll = 1 << 16; // with their units they stay in the second-level cache
    std::vector<Word> const words = wordsOf(cs, sentence);
    std::mt19937 random(1);
    std::vector<Text> texts;
    do
        texts.push_back(makeText(cs, words, bytes, random));
    while (texts.size() * bytes < bytesOfAll);

    auto const append = [](auto& all, auto const& text) { all.append(text).push_back(0); };
    std::vector<std::size_t> otherSizes;
    for (Text const& text : texts) {
        std::string const other = encodeOrEscape(otherSet(cs), text.units);
        append(m_units, text.units);
        append(m_encoded, text.encoded);
        append(m_other, other);
        otherSizes.push_back(other.size());
    }
    auto const* units = m_units.data();
    char const *encoded = m_encoded.data(), *other = m_other.data();
    for (std::size_t i = 0; i < texts.size(); ++i) {
        m_samples.push_back(
            {{units, texts[i].units.size()}, {encoded, texts[i].encoded.size()}, {other, otherSizes[i]}});
        units += m_samples[i].units.size() + 1;
        encoded += m_samples[i].encoded.size() + 1;
        other += m_samples[i].other.size() + 1;
    }
}
