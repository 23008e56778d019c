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
Sample makeSample(VynCharSet cs, std::vector<Word> const& words, std::size_t bytes, std::mt19937& random) {
    Sample made;
    while (made.encoded.size() < bytes) {
        Word const& word = words[random() % words.size()];
        made.units += word.units;
        made.encoded += word.encoded;
    }
    for (;;) {
        std::u16string_view const last = lastCharacter(made.units);
        std::size_t const length = encodeOrEscape(cs, last).size();
        if (made.encoded.size() - length < bytes) {
            made.other = encodeOrEscape(otherSet(cs), made.units);
            return made;
        }
        made.units.erase(made.units.size() - last.size());
        made.encoded.erase(made.encoded.size() - length);
    }
}

} // namespace

Samples::Samples(VynCharSet cs, char16_t const* sentence, std::size_t bytes) {
    constexpr std::size_t bytesOfAll = 1 << 16; // with their units they stay in the second-level cache
    std::vector<Word> const words = wordsOf(cs, sentence);
    std::mt19937 random(1);
    do
        m_samples.push_back(makeSample(cs, words, bytes, random));
    while (m_samples.size() * bytes < bytesOfAll);
}
