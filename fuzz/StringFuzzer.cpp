// A program of operations on a few strings, beside the same on plain texts.

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "fuzz/ServedSets.h"

#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynUChar.h>
#include <vynulib/VynUString.h>

#include <cstring>
#include <memory>
#include <stdexcept>

namespace {

using Units = std::u16string;
using View = std::u16string_view;

constexpr std::size_t npos = VynUString::npos;
constexpr std::size_t inlineCapacity = 257;
constexpr std::size_t longestText = 2200; // of a program, which would double it without end

/// A string and what it has to be.
struct Twin {
    VynUString string;
    Units model;

    void set(VynUString made, Units expected) {
        string = std::move(made);
        model = std::move(expected);
    }
};

/// What an operation works on: `other` may be `target` itself.
struct Operands {
    Twin& target;
    Twin& other;
    Input& input;

    /// In the target's text, at its end or a little beyond.
    std::size_t position() const { return input.upTo(target.model.size() + 2); }
    std::size_t count() const {
        std::size_t const value = position();
        return value == target.model.size() + 2 ? npos : value;
    }
};

unsigned short const* asUnits(char16_t const* units) {
    return reinterpret_cast<unsigned short const*>(units);
}

View untilZero(View text) {
    return text.substr(0, text.find(u'\0'));
}

/// Whether `change` throws what says that a position is none.
template <class Change>
bool isRangeError(Change change) {
    try {
        change();
        return false;
    } catch (std::out_of_range const&) {
        return true;
    }
}

void assignUnits(Operands const& on) {
    Units const text = on.input.word();
    on.target.string = View(text);
    on.target.model = text;
}

void assignTerminated(Operands const& on) {
    Units const text = on.input.word();
    on.target.string = text.c_str();
    on.target.model = untilZero(text);
}

void assignOther(Operands const& on) {
    on.target.string = on.other.string;
    on.target.model = on.other.model;
}

void assignPart(Operands const& on) {
    std::size_t const from = std::min(on.position(), on.target.model.size());
    on.target.string = on.target.string.data() + from; // its own text
    on.target.model = untilZero(Units(on.target.model, from));
}

void moveOther(Operands const& on) {
    if (&on.target == &on.other)
        return;
    on.target.string = std::move(on.other.string);
    on.target.model = std::move(on.other.model);
    on.other.model.clear();
}

void swapOther(Operands const& on) {
    on.target.string.swap(on.other.string);
    std::swap(on.target.model, on.other.model);
}

/// Only where no heap array is let go of.
void assignNew(Operands const& on) {
    if (&on.target == &on.other || on.target.string.capacity() > inlineCapacity)
        return;
    on.target.string.assign(on.other.string);
    on.target.model = on.other.model;
}

void constructBounded(Operands const& on) {
    Units const text = on.input.word();
    std::size_t const count = std::min(on.count(), text.size());
    on.target.set(VynUString(text.data(), count), Units(untilZero(View(text).substr(0, count))));
}

void constructPart(Operands const& on) {
    std::size_t const from = on.position(), count = on.count();
    Units const& text = on.other.model;
    on.target.set(VynUString(on.other.string, from, count), text.substr(std::min(from, text.size()), count));
}

void constructRepeated(Operands const& on) {
    char16_t const unit = on.input.unit();
    std::size_t const count = on.input.upTo(600);
    on.target.set(VynUString(unit, count), Units(unit == 0 ? 0 : count, unit));
}

void constructDigits(Operands const& on) {
    std::size_t const high = on.input.upTo(0xFFFF), low = on.input.upTo(0xFFFF);
    int const number = static_cast<int>(high << 16 | low);
    std::string const digits = std::to_string(number);
    on.target.set(VynUString(number), Units(digits.begin(), digits.end()));
}

void constructBstr(Operands const& on) {
    Units const text = on.input.word();
    auto const memory = std::make_unique<unsigned short[]>(text.size() + 1); // no more than the length says
    memory[0] = static_cast<unsigned short>(text.size());
    std::copy(text.begin(), text.end(), &memory[1]);
    on.target.set(VynUString(reinterpret_cast<VynBSTR const*>(memory.get())), text);
}

/// Bytes as the converter of the set has them: as many units as it counts, up to the terminator.
void constructFromBytes(Operands const& on) {
    VynCharSet const cs = on.input.among(namedSets);
    std::string bytes(on.input.upTo(40), '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(on.input.byte());
    std::size_t const length = bytes.size();
    bytes.append(7, '\0'); // a terminator of four bytes after a character that is cut short
    std::size_t const bound = on.input.flag() ? npos : on.input.upTo(length);
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
    bool const endsAtByte = bound != npos && converter.getNullCharSize() == 1;
    std::size_t const counted = endsAtByte ? std::min(bound, std::strlen(bytes.data())) : bound;
    Units expected(converter.getNumUnits(bytes.data(), counted) + 1, u'\0');
    expected.resize(expected.size() == 1
                        ? 0
                        : converter.toUTF16(reinterpret_cast<unsigned short*>(expected.data()), bytes.data(),
                                            expected.size() - 1, ILLCHAR_REPLACE, nullptr, -1));
    on.target.set(VynUString(bytes.data(), bound, cs), expected);
}

void erasePart(Operands const& on) {
    std::size_t const from = on.position(), count = on.count();
    Units const before = on.target.model;
    bool const threw = isRangeError([&] { on.target.string.erase(from, count); });
    require(threw == (from > before.size() && !before.empty()), "erase refuses a position past the end", from);
    if (!threw && !before.empty())
        on.target.model.erase(from, count);
}

void eraseAll(Operands const& on) {
    on.target.string.erase();
    on.target.model.clear();
}

void replacePart(Operands const& on) {
    std::size_t const from = on.position(), count = on.count();
    std::size_t const otherFrom = on.position(), otherCount = on.count();
    Units const inserted = on.other.model;
    bool const threw =
        isRangeError([&] { on.target.string.replace(from, count, on.other.string, otherFrom, otherCount); });
    require(threw == (from > on.target.model.size() || otherFrom > inserted.size()), "replace refuses positions", from,
            otherFrom);
    if (!threw)
        on.target.model.replace(from, count, inserted, otherFrom, otherCount);
}

void replaceRange(Operands const& on) {
    std::size_t const size = on.target.model.size();
    std::size_t const from = std::min(on.position(), size), to = std::min(on.position(), size);
    unsigned short const* const begin = on.target.string.data();
    Units const inserted = on.other.model;
    on.target.string.replace(begin + from, begin + to, on.other.string);
    on.target.model.replace(from, to < from ? npos : to - from, inserted);
}

void takeLeft(Operands const& on) {
    std::size_t const count = on.position();
    bool const threw = isRangeError([&] { on.target.string = on.other.string.left(count); });
    require(threw == (count > on.other.model.size()), "left refuses more than there is", count);
    if (!threw)
        on.target.model = on.other.model.substr(0, count);
}

void takeMiddle(Operands const& on) {
    std::size_t const from = on.position(), count = on.count(), size = on.other.model.size();
    bool const threw = isRangeError([&] { on.target.string = on.other.string.mid(from, count); });
    require(threw == (count != npos && from + count > size), "mid refuses more than there is", from, count);
    if (!threw)
        on.target.model = on.other.model.substr(std::min(from, size), count);
}

/// Beyond the capacity the old text is lost.
void resizeWithUnit(Operands const& on) {
    std::size_t const size = on.input.upTo(600);
    char16_t const unit = on.input.unit();
    if (size > on.target.string.capacity())
        on.target.model.clear();
    on.target.string.resize(size, unit);
    on.target.model.resize(size, unit);
}

void resizeWithByte(Operands const& on) {
    std::size_t const size = on.input.upTo(600);
    char const byte = static_cast<char>(1 + on.input.upTo(0x7D));
    if (size > on.target.string.capacity())
        on.target.model.clear();
    on.target.string.resize(size, byte, VYNCS_ISO_8859_1);
    on.target.model.resize(size, static_cast<char16_t>(byte));
}

/// Makes room by discarding the text, but keeps its bytes.
void makeRoom(Operands const& on) {
    std::size_t const size = on.input.upTo(600);
    if (size > on.target.string.capacity())
        on.target.model.clear();
    on.target.string.AssureSpace(size);
    on.target.string.freeSecText();
    require(on.target.string.capacity() >= size, "there is the room asked for");
}

void append(Operands const& on) {
    if (on.target.model.size() + on.other.model.size() > longestText)
        return;
    on.target.set(on.other.string + on.target.string, on.other.model + on.target.model);
}

void appendUnits(Operands const& on) {
    Units const text = on.input.word();
    char16_t const unit = on.input.unit();
    on.target.set(unit + (on.target.string + text.c_str()) + unit, Units(unit == 0 ? 0 : 1, unit) + on.target.model +
                                                                       Units(untilZero(text)) +
                                                                       Units(unit == 0 ? 0 : 1, unit));
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

void mapCase(Operands const& on) {
    bool const upper = on.input.flag(), asciiOnly = on.input.flag();
    upper ? on.target.string.toUpper(asciiOnly) : on.target.string.toLower(asciiOnly);
    for (char16_t& unit : on.target.model)
        unit = mappedCase(unit, upper, asciiOnly);
}

void trim(Operands const& on) {
    auto const ends = static_cast<VynUString::TrimCmd>(1 + on.input.upTo(2));
    auto const target = static_cast<VynUString::TrimTarget>(on.input.upTo(2));
    auto const isKept = [&](char16_t unit) {
        unsigned const classes = VynUChar::getCharClass(unit);
        if (target == VynUString::TRIM_SPACE)
            return unit != u' ';
        return (classes & 1) == 0 && (target == VynUString::TRIM_WHITESPACE || classes != 0);
    };
    on.target.string.trim(ends, target);
    Units& model = on.target.model;
    if ((ends & VynUString::TRIM_LEADING) != 0)
        model.erase(model.begin(), std::find_if(model.begin(), model.end(), isKept));
    if ((ends & VynUString::TRIM_TRAILING) != 0)
        model.erase(std::find_if(model.rbegin(), model.rend(), isKept).base(), model.end());
}

/// Writing keeps the bytes of the text before.
void writeUnit(Operands const& on) {
    std::size_t const at = on.position();
    char16_t const unit = on.input.unit();
    bool const threw = isRangeError([&] { on.target.string.at(at) = unit; });
    require(threw == (at >= on.target.model.size()), "at refuses a position past the last unit", at);
    on.target.string.freeSecText();
    if (!threw)
        on.target.model[at] = unit;
}

int sign(int order) {
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

void compare(Operands const& on) {
    std::size_t const count = on.count();
    View const a = untilZero(on.target.model).substr(0, count), b = untilZero(on.other.model).substr(0, count);
    require(on.target.string.compare(on.other.string, count) == sign(a.compare(b)), "strings compare as their units");
    require((on.target.string == on.other.string) == (untilZero(on.target.model) == untilZero(on.other.model)),
            "strings are equal up to their zeros");
    require((on.target.string < on.other.string) == (untilZero(on.target.model) < untilZero(on.other.model)),
            "strings sort as their units");
}

/// Only units that differ are mapped: so the order is that of the first that differ in upper case.
void compareWithoutCase(Operands const& on) {
    std::size_t const count = on.count();
    Units a(untilZero(on.target.model).substr(0, count)), b(untilZero(on.other.model).substr(0, count));
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        if (a[i] != b[i]) {
            a[i] = mappedCase(a[i], true, false);
            b[i] = mappedCase(b[i], true, false);
        }
    require(on.target.string.compareNoCase(on.other.string, count) == sign(a.compare(b)),
            "strings compare without case as their units in upper case");
}

void findUnit(Operands const& on) {
    std::size_t const from = on.position(), size = on.target.model.size();
    char16_t const unit =
        on.input.flag() || size == 0 ? on.input.unit() : on.target.model[std::min(on.position(), size - 1)];
    std::size_t const found = unit == 0 ? npos : on.target.model.find(unit, from);
    require(on.target.string.find(static_cast<unsigned short>(unit), from) == found, "find of a unit", from);
    std::size_t const last = unit == 0 || from >= size ? size - 1 : on.target.model.rfind(unit, from);
    require(on.target.string.rfind(static_cast<unsigned short>(unit), from) == last, "rfind of a unit", from);
}

/// After its first unit, `sought` is met up to its first zero unit, that included.
bool occursAt(View text, View sought, std::size_t at) {
    std::size_t const zero = sought.find(u'\0', 1);
    View const compared = sought.substr(0, zero == npos ? npos : zero + 1);
    return text.substr(at, compared.size()) == compared;
}

void findText(Operands const& on) {
    bool const same = &on.target == &on.other;
    std::size_t const from = on.position();
    View const text = on.target.model, sought = on.other.model;
    std::size_t first = npos, last = npos;
    if (!sought.empty() && sought.size() <= text.size())
        for (std::size_t at = 0; at <= text.size() - sought.size(); ++at)
            if (occursAt(text, sought, at)) {
                first = at >= from && first == npos ? at : first;
                last = at <= from ? at : last;
            }
    require(on.target.string.find(on.other.string, from) == (same && from != 0 ? npos : first), "find of a text", from);
    require(on.target.string.rfind(on.other.string, from) == last, "rfind of a text", from, same);
}

/// The byte text, kept with the string, is what the converter makes of its units.
void convertToBytes(Operands const& on) {
    VynCharSet const cs = on.input.among(namedSets);
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
    std::size_t const terminator = converter.getNullCharSize();
    unsigned short const* const units = asUnits(on.target.model.c_str());
    std::size_t const needed = on.target.model.empty() ? 0 : converter.getNumBytes(units, on.target.model.size());
    require(on.target.string.length(cs) == needed, "the bytes that are needed", cs);

    std::string expected(needed + terminator, '\0');
    expected.resize(converter.fromUTF16(expected.data(), units, needed, ILLCHAR_REPLACE, nullptr) + terminator);
    char const* const bytes = on.target.string.c_str(cs);
    require(on.target.model.empty() ? *bytes == 0 : expected == std::string_view(bytes, expected.size()),
            "the bytes of the text", cs);
    require(on.target.string.c_str(cs) == bytes, "the bytes stay where they are", cs);
}

void copyBytes(Operands const& on) {
    VynCharSet const cs = on.input.among(namedSets);
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(cs);
    std::size_t const size = 1 + on.input.upTo(on.target.string.length(cs) + 8);
    std::size_t const terminator = converter.getNullCharSize();
    auto const dst = std::make_unique<char[]>(size + terminator);
    std::string expected(size + terminator, '\0');
    unsigned long const count =
        converter.fromUTF16(expected.data(), asUnits(on.target.model.c_str()), size, ILLCHAR_REPLACE, nullptr);
    require(on.target.string.copy(dst.get(), size, cs) == (on.target.model.empty() ? 0 : count), "bytes copied", cs);
    require(on.target.model.empty() || expected.compare(0, count + terminator, dst.get(), count + terminator) == 0,
            "the bytes copied", cs);
}

void copyUnits(Operands const& on) {
    std::size_t const size = on.position(), count = std::min(size, on.target.model.size());
    auto const dst = std::make_unique<char16_t[]>(size);
    require(on.target.string.copy(dst.get(), size) == count, "units copied", size);
    require(View(dst.get(), count) == View(on.target.model).substr(0, count), "the units copied", size);
    auto const bstr = std::make_unique<unsigned short[]>(count + 1);
    require(on.target.string.copy(reinterpret_cast<VynBSTR*>(bstr.get()), size) == count && bstr[0] == count &&
                std::equal(&bstr[1], &bstr[1] + count, dst.get()),
            "the units copied with their length in front", size);
}

void countCharacters(Operands const& on) {
    Units const& text = on.target.model;
    VynCharSetConverter& utf32 = *VynCharSetConverter::getConverter(VYNCS_UTF32);
    std::size_t const expected = text.empty() ? 0 : utf32.getNumBytes(asUnits(text.c_str()), text.size()) / 4;
    require(on.target.string.numChars() == expected, "characters", expected);
    std::size_t const at = on.position();
    unsigned value = 0;
    bool const threw = isRangeError([&] { value = on.target.string.at_utf32(at); });
    if (!threw) {
        std::string bytes(text.size() * 4 + 4, '\0');
        utf32.fromUTF16(bytes.data(), asUnits(text.c_str()), text.size() * 4, ILLCHAR_REPLACE, nullptr);
        require(std::string_view(bytes).substr(at * 4, 4) ==
                    std::string_view(reinterpret_cast<char const*>(&value), sizeof value),
                "the character at a place", at);
    }
    require(at < expected || threw, "at_utf32 refuses a place past the last character", at);
}

constexpr void (*operations[])(Operands const&) = {assignUnits,
                                                   assignTerminated,
                                                   assignOther,
                                                   assignPart,
                                                   moveOther,
                                                   swapOther,
                                                   assignNew,
                                                   constructBounded,
                                                   constructPart,
                                                   constructDigits,
                                                   constructBstr,
                                                   constructRepeated,
                                                   constructFromBytes,
                                                   erasePart,
                                                   eraseAll,
                                                   replacePart,
                                                   replaceRange,
                                                   takeLeft,
                                                   takeMiddle,
                                                   resizeWithUnit,
                                                   resizeWithByte,
                                                   makeRoom,
                                                   append,
                                                   appendUnits,
                                                   mapCase,
                                                   trim,
                                                   writeUnit,
                                                   compare,
                                                   compareWithoutCase,
                                                   findUnit,
                                                   findText,
                                                   convertToBytes,
                                                   copyBytes,
                                                   copyUnits,
                                                   countCharacters};

void requireTwins(Twin const& twin, std::size_t operation) {
    require(twin.string.view() == twin.model, "the string is as its model after operation", operation, "units",
            twin.string.length(), "expected", twin.model.size());
    require(twin.string.data()[twin.string.length()] == 0, "it is terminated after operation", operation);
    require(twin.string.capacity() >= std::max(twin.model.size(), inlineCapacity), "it has the room that it takes",
            operation);
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
