#pragma once

#include <vynulib/VynUChar.h>
#include <vynulib/VynUString.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

/// The rules of `VynUString`, over plain texts and a number for the capacity.
namespace model {

using Text = std::u16string;

inline constexpr unsigned long npos = VynUString::npos, inlineCapacity = 257;

struct Model {
    Text text;
    unsigned long capacity = inlineCapacity;

    Model() = default;
    explicit Model(Text const& t, unsigned long reserved = 0)
        : text(t), capacity(std::max({inlineCapacity, t.size(), reserved})) {}

    void set(Text const& t) {
        capacity = std::max(capacity, t.size());
        text = t;
    }

    void resize(unsigned long n, char16_t fill) {
        if (n == text.size())
            return;
        if (n == npos)
            throw std::length_error("exceed maximum string length");
        if (n > capacity)
            *this = Model(Text(), n); // the old text is lost
        text.resize(n, fill);
    }

    void replace(unsigned long p, unsigned long n, Text const& s, unsigned long q, unsigned long k) {
        checkRange(p <= text.size() && q <= s.size());
        set(Text(text).replace(p, n, s.substr(q, k)));
    }

    static void checkRange(bool holds) {
        if (!holds)
            throw std::out_of_range("invalid string index given");
    }
};

inline unsigned short unitOf(unsigned long value) {
    return static_cast<unsigned short>(value);
}

inline Text upToZero(Text const& text) {
    return text.substr(0, text.find(u'\0'));
}

inline Text mapped(Text text, VynUCharTable& table, bool asciiOnly) {
    for (char16_t& unit : text)
        if (unsigned short const value = asciiOnly && unit > 0x7F ? 0 : table.getValue(unit))
            unit = value;
    return text;
}

inline int compareTexts(Text const& a, Text const& b, unsigned long n, bool fold) {
    auto const compared = [&](Text const& text) {
        Text const cut = upToZero(text.substr(0, n));
        return fold ? mapped(cut, VynUChar::m_gUpperCaseTable, false) : cut;
    };
    int const order = compared(a).compare(compared(b));
    return (order > 0) - (order < 0);
}

inline bool occursAt(Text const& text, Text const& s, unsigned long i) {
    return text[i] == s[0] && compareTexts(text.substr(i + 1), s.substr(1), s.size() - 1, false) == 0;
}

inline unsigned long findText(Text const& text, Text const& s, unsigned long pos) {
    if (!s.empty())
        for (unsigned long i = pos; i < text.size() && s.size() <= text.size() - i; ++i)
            if (occursAt(text, s, i))
                return i;
    return npos;
}

inline unsigned long rfindText(Text const& text, Text const& s, unsigned long pos) {
    if (s.empty() || s.size() > text.size())
        return npos;
    unsigned long i = std::min(pos, text.size() - s.size());
    while (i != npos && !occursAt(text, s, i))
        --i;
    return i;
}

inline std::vector<Text> splitText(Text const& text, Text const& separator) {
    if (separator.empty())
        return {text};
    std::vector<Text> fields;
    unsigned long start = 0;
    for (unsigned long end; (end = findText(text, separator, start)) != npos; start = end + separator.size())
        fields.push_back(text.substr(start, end - start));
    if (start < text.size())
        fields.push_back(text.substr(start));
    return fields;
}

} // namespace model
