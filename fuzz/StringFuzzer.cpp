// A program of operations on a few strings, beside the same on plain texts.

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "tests/support/ServedSets.h"

#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynUChar.h>
#include <vynulib/VynUString.h>

#include <cstring>
#include <memory>
#include <tuple>
#include <utility>

namespace {

using Units = std::u16string;
using View = std::u16string_view;

constexpr std::size_t npos = VynUString::npos;
constexpr std::size_t inlineCapacity = 257;
constexpr std::size_t longestText = 2200; // of a program, which would double it without end
constexpr char badIndex[] = "invalid string index given";

/// A string, its text and its capacity.
struct Twin {
    VynUString string;
    Units text;
    std::size_t capacity = inlineCapacity;

    /// The text changed in place, or in an array in which it just fits.
    void expect(Units const& expected) {
        text = expected;
        capacity = std::max(capacity, text.size());
    }
    /// A new string takes the place of the old one.
    void take(VynUString made, Units const& expected, std::size_t reserved = 0) {
        string = std::move(made);
        capacity = std::max(inlineCapacity, reserved);
        expect(expected);
    }
    /// Where new room is made, the old text is lost.
    void makeRoom(std::size_t size) {
        if (size > capacity)
            text.clear();
        capacity = std::max(capacity, size);
    }
};

/// What an operation works on: `other` may be `target` itself.
struct Operands {
    Twin& target;
    Twin& other;
    Input& input;

    VynUString& string() const { return target.string; }
    Units& text() const { return target.text; }
    bool same() const { return &target == &other; }

    /// In the target's text, at its end or a little beyond.
    std::size_t position() const { return input.upTo(text().size() + 2); }
    std::size_t count() const {
        std::size_t const value = position();
        return value == text().size() + 2 ? npos : value;
    }
};

unsigned short const* asUnits(char16_t const* units) {
    return reinterpret_cast<unsigned short const*>(units);
}

VynCharSetConverter& converterOf(VynCharSet cs) {
    return *VynCharSetConverter::getConverter(cs);
}

View untilZero(View text) {
    return text.substr(0, text.find(u'\0'));
}

char16_t mappedCase(char16_t unit, bool upper, bool asciiOnly) {
    char16_t const first = upper ? u'a' : u'A';
    if (unit >= first && unit <= first + 25)
        return static_cast<char16_t>(unit ^ 0x20);
    if (asciiOnly || unit < 0x7F)
        return unit;
    VynUCharTable& table = upper ? VynUChar::m_gUpperCaseTable : VynUChar::m_gLowerCaseTable;
    char16_t const mapped = table.getValue(unit);
    return mapped != 0 ? mapped : unit;
}

int sign(int order) {
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

/// How many units at each position are those that `text` begins with.
std::vector<std::size_t> sameAsStart(Units const& text) {
    std::vector<std::size_t> same(text.size());
    for (std::size_t at = 1, begin = 0, end = 0; at < text.size(); ++at) {
        if (at < end) // within the stretch that is known to go on as the start does
            same[at] = std::min(end - at, same[at - begin]);
        while (at + same[at] < text.size() && text[same[at]] == text[at + same[at]])
            ++same[at];
        if (at + same[at] > end) {
            begin = at;
            end = at + same[at];
        }
    }
    return same;
}

constexpr void (*operations[])(Operands const&) = {
    [](Operands const& on) {
        Units const text = on.input.word();
        on.string() = View(text);
        on.target.expect(text);
    },
    [](Operands const& on) {
        Units const text = on.input.word();
        on.string() = text.c_str();
        on.target.expect(Units(untilZero(text)));
    },
    [](Operands const& on) {
        on.string() = on.other.string;
        on.target.expect(Units(on.other.text));
    },
    [](Operands const& on) { // its own text
        std::size_t const from = std::min(on.position(), on.text().size());
        on.string() = on.string().data() + from;
        on.target.expect(Units(untilZero(View(on.text()).substr(from))));
    },
    [](Operands const& on) {
        on.string() = std::move(on.other.string);
        if (!on.same())
            std::tie(on.text(), on.target.capacity) =
                std::pair(std::exchange(on.other.text, {}), std::exchange(on.other.capacity, inlineCapacity));
    },
    [](Operands const& on) { // by way of copies
        on.string().swap(on.other.string);
        if (on.same())
            return;
        std::swap(on.text(), on.other.text);
        for (Twin* const twin : {&on.target, &on.other})
            twin->capacity = std::max(inlineCapacity, twin->text.size());
    },
    [](Operands const& on) { // lets go of a heap array
        std::unique_ptr<unsigned short const[]> array;
        if (!on.same() && on.target.capacity > inlineCapacity)
            array.reset(on.string().data());
        on.string().assign(on.other.string);
        if (!on.same())
            on.target.capacity = inlineCapacity;
        on.target.expect(Units(on.other.text));
    },
    [](Operands const& on) {
        Units const text = on.input.word();
        std::size_t const count = std::min(on.count(), text.size());
        on.target.take(VynUString(text.data(), count), Units(untilZero(View(text).substr(0, count))));
    },
    [](Operands const& on) {
        std::size_t const from = on.position(), count = on.count();
        Units const& text = on.other.text;
        on.target.take(VynUString(on.other.string, from, count), text.substr(std::min(from, text.size()), count));
    },
    [](Operands const& on) {
        std::size_t const high = on.input.upTo(0xFFFF), low = on.input.upTo(0xFFFF);
        int const number = static_cast<int>(high << 16 | low);
        std::string const digits = std::to_string(number);
        on.target.take(VynUString(number), Units(digits.begin(), digits.end()));
    },
    [](Operands const& on) {
        Units const text = on.input.word();
        auto const memory = std::make_unique<unsigned short[]>(text.size() + 1); // no more than the length says
        memory[0] = static_cast<unsigned short>(text.size());
        std::copy(text.begin(), text.end(), &memory[1]);
        on.target.take(VynUString(reinterpret_cast<VynBSTR const*>(memory.get())), text);
    },
    [](Operands const& on) {
        char16_t const unit = on.input.unit();
        std::size_t const count = on.input.upTo(600);
        on.target.take(VynUString(unit, count), Units(unit == 0 ? 0 : count, unit));
    },
    [](Operands const&
           on) { // bytes as the converter of the set has them: as many units as it counts, up to the terminator
        VynCharSet const cs = on.input.among(namedSets);
        VynCharSetConverter& converter = converterOf(cs);
        std::string bytes(on.input.upTo(40), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(on.input.byte());
        std::size_t const length = bytes.size();
        bytes.append(7, '\0'); // a terminator of four bytes after a character that is cut short
        std::size_t const bound = on.input.flag() ? npos : on.input.upTo(length);
        bool const endsAtByte = bound != npos && converter.getNullCharSize() == 1;
        std::size_t const counted = endsAtByte ? std::min(bound, std::strlen(bytes.data())) : bound;
        Units expected(converter.getNumUnits(bytes.data(), counted) + 1, u'\0');
        expected.resize(expected.size() == 1
                            ? 0
                            : converter.toUTF16(reinterpret_cast<unsigned short*>(expected.data()), bytes.data(),
                                                expected.size() - 1, ILLCHAR_REPLACE, nullptr, -1));
        on.target.take(VynUString(bytes.data(), bound, cs), expected);
    },
    [](Operands const& on) {
        std::size_t const from = on.position(), count = on.count();
        bool const empty = on.text().empty(); // then nothing is refused
        if (changes(from <= on.text().size() || empty, badIndex, [&] { on.string().erase(from, count); }) && !empty)
            on.text().erase(from, count);
    },
    [](Operands const& on) {
        on.string().erase();
        on.text().clear();
    },
    [](Operands const& on) {
        std::size_t const from = on.position(), count = on.count(), otherFrom = on.position(), otherCount = on.count();
        Units const inserted = on.other.text;
        if (changes(from <= on.text().size() && otherFrom <= inserted.size(), badIndex,
                    [&] { on.string().replace(from, count, on.other.string, otherFrom, otherCount); }))
            on.target.expect(Units(on.text()).replace(from, count, inserted, otherFrom, otherCount));
    },
    [](Operands const& on) { // to the end, where the range ends before it begins
        std::size_t const size = on.text().size();
        std::size_t const from = std::min(on.position(), size), to = std::min(on.position(), size);
        unsigned short const* const begin = on.string().data();
        Units const inserted = on.other.text;
        on.string().replace(begin + from, begin + to, on.other.string);
        on.target.expect(Units(on.text()).replace(from, to < from ? npos : to - from, inserted));
    },
    [](Operands const& on) {
        std::size_t const count = on.position();
        Units const whole = on.other.text;
        VynUString part;
        if (changes(count <= whole.size(), badIndex, [&] { part = on.other.string.left(count); }))
            on.target.take(part, whole.substr(0, count));
    },
    [](Operands const& on) { // to the end from past the end is empty
        std::size_t const from = on.position(), count = on.count();
        Units const whole = on.other.text;
        VynUString part;
        if (changes(count == npos || from + count <= whole.size(), badIndex,
                    [&] { part = on.other.string.mid(from, count); }))
            on.target.take(part, whole.substr(std::min(from, whole.size()), count));
    },
    [](Operands const& on) {
        std::size_t const size = on.input.upTo(600);
        char16_t const unit = on.input.unit();
        on.target.makeRoom(size);
        on.string().resize(size, unit);
        on.text().resize(size, unit);
    },
    [](Operands const& on) {
        std::size_t const size = on.input.upTo(600);
        char const byte = static_cast<char>(1 + on.input.upTo(0x7D));
        on.target.makeRoom(size);
        on.string().resize(size, byte, VYNCS_ISO_8859_1);
        on.text().resize(size, static_cast<char16_t>(byte));
    },
    [](Operands const& on) { // keeps the bytes of the text before
        std::size_t const size = on.input.upTo(600);
        on.target.makeRoom(size);
        on.string().AssureSpace(size);
        on.string().freeSecText();
    },
    [](Operands const& on) {
        if (on.text().size() + on.other.text.size() <= longestText)
            on.target.take(on.other.string + on.string(), on.other.text + on.text());
    },
    [](Operands const& on) {
        Units const text = on.input.word();
        char16_t const unit = on.input.unit();
        Units const end(unit == 0 ? 0 : 1, unit);
        on.target.take(unit + (on.string() + text.c_str()) + unit, end + on.text() + Units(untilZero(text)) + end);
    },
    [](Operands const& on) {
        bool const upper = on.input.flag(), asciiOnly = on.input.flag();
        upper ? on.string().toUpper(asciiOnly) : on.string().toLower(asciiOnly);
        for (char16_t& unit : on.text())
            unit = mappedCase(unit, upper, asciiOnly);
    },
    [](Operands const& on) {
        auto const ends = static_cast<VynUString::TrimCmd>(1 + on.input.upTo(2));
        auto const target = static_cast<VynUString::TrimTarget>(on.input.upTo(2));
        auto const isKept = [&](char16_t unit) {
            unsigned const classes = VynUChar::getCharClass(unit);
            if (target == VynUString::TRIM_SPACE)
                return unit != u' ';
            return (classes & 1) == 0 && (target == VynUString::TRIM_WHITESPACE || classes != 0);
        };
        on.string().trim(ends, target);
        Units& text = on.text();
        if ((ends & VynUString::TRIM_LEADING) != 0)
            text.erase(text.begin(), std::find_if(text.begin(), text.end(), isKept));
        if ((ends & VynUString::TRIM_TRAILING) != 0)
            text.erase(std::find_if(text.rbegin(), text.rend(), isKept).base(), text.end());
    },
    [](Operands const& on) { // keeps the bytes of the text before
        std::size_t const at = on.position();
        char16_t const unit = on.input.unit();
        if (changes(at < on.text().size(), badIndex, [&] { on.string().at(at) = unit; }))
            on.text()[at] = unit;
        on.string().freeSecText();
    },
    [](Operands const& on) {
        std::size_t const count = on.count();
        View const a = untilZero(on.text()), b = untilZero(on.other.text);
        int const order = sign(a.substr(0, count).compare(b.substr(0, count)));
        require(on.string().compare(on.other.string, count) == order, "strings compare as their units");
        require(on.string().canonicalCompare(on.string().data(), on.other.string.data(), count) == order,
                "so do pointers to their units");
        require((on.string() == on.other.string) == (a == b), "strings are equal up to their zeros");
        require((on.string() < on.other.string) == (a < b), "strings sort as their units");
    },
    [](Operands const& on) { // only units that differ are mapped: so the first that differ in upper case decide
        std::size_t const count = on.count();
        Units a(untilZero(on.text()).substr(0, count)), b(untilZero(on.other.text).substr(0, count));
        for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
            if (a[i] != b[i]) {
                a[i] = mappedCase(a[i], true, false);
                b[i] = mappedCase(b[i], true, false);
            }
        require(on.string().compareNoCase(on.other.string, count) == sign(a.compare(b)),
                "strings compare without case as their units in upper case");
        require(on.string().canonicalCompareNoCase(on.string().data(), on.other.string.data(), count) ==
                    sign(a.compare(b)),
                "so do pointers to their units");
    },
    [](Operands const& on) {
        std::size_t const from = on.position(), size = on.text().size();
        char16_t const unit =
            on.input.flag() || size == 0 ? on.input.unit() : on.text()[std::min(on.position(), size - 1)];
        std::size_t const found = unit == 0 ? npos : on.text().find(unit, from);
        require(on.string().find(unit, from) == found, "find of a unit", from);
        std::size_t const last = unit == 0 || from >= size ? size - 1 : on.text().rfind(unit, from);
        require(on.string().rfind(unit, from) == last, "rfind of a unit", from);
    },
    [](Operands const& on) { // after its first unit, a text is met up to its first zero unit, that included
        std::size_t const from = on.position();
        Units const& text = on.text();
        Units const& sought = on.other.text;
        std::size_t const zero = sought.find(u'\0', 1), compared = zero == npos ? sought.size() : zero + 1;
        std::vector<std::size_t> const same = sameAsStart(sought.substr(0, compared) + text);
        std::size_t first = npos, last = npos;
        for (std::size_t at = 0; !sought.empty() && at + sought.size() <= text.size(); ++at)
            if (same[compared + at] >= compared) {
                first = at >= from && first == npos ? at : first;
                last = at <= from ? at : last;
            }
        first = on.same() && from != 0 ? npos : first;
        require(on.string().find(on.other.string, from) == first, "find of a text", from);
        require(on.string().rfind(on.other.string, from) == last, "rfind of a text", from);
    },
    [](Operands const& on) { // what the converter makes of the units, kept with the string
        VynCharSet const cs = on.input.among(namedSets);
        VynCharSetConverter& converter = converterOf(cs);
        std::size_t const terminator = converter.getNullCharSize();
        unsigned short const* const units = asUnits(on.text().c_str());
        std::size_t const needed = on.text().empty() ? 0 : converter.getNumBytes(units, on.text().size());
        require(on.string().length(cs) == needed, "the bytes that are needed", cs);

        std::string expected(needed + terminator, '\0');
        expected.resize(converter.fromUTF16(expected.data(), units, needed, ILLCHAR_REPLACE, nullptr) + terminator);
        char const* const bytes = on.string().c_str(cs);
        require(on.text().empty() ? *bytes == 0 : expected == std::string_view(bytes, expected.size()),
                "the bytes of the text", cs);
        require(on.string().c_str(cs) == bytes, "the bytes stay where they are", cs);
    },
    [](Operands const& on) {
        VynCharSet const cs = on.input.among(namedSets);
        std::size_t const size = 1 + on.input.upTo(on.string().length(cs) + 8);
        std::size_t const terminator = converterOf(cs).getNullCharSize();
        auto const dst = std::make_unique<char[]>(size + terminator);
        std::string expected(size + terminator, '\0');
        unsigned long const count =
            converterOf(cs).fromUTF16(expected.data(), asUnits(on.text().c_str()), size, ILLCHAR_REPLACE, nullptr);
        require(on.string().copy(dst.get(), size, cs) == (on.text().empty() ? 0 : count), "bytes copied", cs);
        require(on.text().empty() || expected.compare(0, count + terminator, dst.get(), count + terminator) == 0,
                "the bytes copied", cs);
    },
    [](Operands const& on) {
        std::size_t const size = on.position(), count = std::min(size, on.text().size());
        auto const dst = std::make_unique<char16_t[]>(size);
        require(on.string().copy(dst.get(), size) == count, "units copied", size);
        require(View(dst.get(), count) == View(on.text()).substr(0, count), "the units copied", size);
        auto const bstr = std::make_unique<unsigned short[]>(count + 1);
        require(on.string().copy(reinterpret_cast<VynBSTR*>(bstr.get()), size) == count && bstr[0] == count &&
                    std::equal(&bstr[1], &bstr[1] + count, dst.get()),
                "the units copied with their length in front", size);
    },
    [](Operands const& on) {
        Units const& text = on.text();
        VynCharSetConverter& utf32 = converterOf(VYNCS_UTF32);
        std::size_t const expected = text.empty() ? 0 : utf32.getNumBytes(asUnits(text.c_str()), text.size()) / 4;
        require(on.string().numChars() == expected, "characters", expected);
        std::size_t const at = on.position();
        unsigned value = 0;
        std::u32string values(expected + 1, U'\0');
        values.resize(utf32.fromUTF16(values.data(), asUnits(text.c_str()), expected * 4, ILLCHAR_REPLACE, nullptr) /
                      4);
        if (changes(at < values.size(), badIndex, [&] { value = on.string().at_utf32(at); }))
            require(value == values[at], "the character at a place", at);
    },
};

void requireTwins(Twin const& twin, std::size_t operation) {
    require(twin.string.view() == twin.text, "the string is as its model after operation", operation, "units",
            twin.string.length(), "expected", twin.text.size());
    require(twin.string.data()[twin.string.length()] == 0, "it is terminated after operation", operation);
    require(twin.string.capacity() == twin.capacity, "it has the room that it has to have after operation", operation,
            twin.string.capacity(), "expected", twin.capacity);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    Twin twins[3];
    for (int steps = 0; steps < 40 && !input.empty(); ++steps) {
        std::size_t const operation = input.upTo(std::size(operations) - 1), pair = input.upTo(8);
        operations[operation]({twins[pair % 3], twins[pair / 3], input});
        for (Twin const& twin : twins)
            requireTwins(twin, operation);
    }
    return 0;
}
