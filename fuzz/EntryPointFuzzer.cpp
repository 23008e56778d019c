// The conversions in one call, from sources and into destinations of exactly their size, against the converters that
// they are made of. The default set, which paths are in, is that of LANG.

#include "fuzz/Exact.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "tests/support/ServedSets.h"

#include <vynulib/VynCharSetConverter.h>

#include <cstring>

namespace {

using Bytes = std::string;
using Units = std::u16string;

VynCharSetConverter& converterOf(VynCharSet cs) {
    return *VynCharSetConverter::getConverter(cs);
}

unsigned short const* asUnits(char16_t const* units) {
    return reinterpret_cast<unsigned short const*>(units);
}

/// A copy of a text, without what would make half an element, and `terminator` zeros; the memory ends there.
template <class Element>
class Source {
public:
    explicit Source(std::basic_string<Element> const& text, std::size_t terminator = 1)
        : m_memory(text.size() / terminator * terminator + terminator) {
        std::size_t const size = text.size() / terminator * terminator;
        std::fill_n(std::copy_n(text.data(), size, m_memory.get()), terminator, Element{});
    }

    Element const* data() const { return m_memory.get(); }
    unsigned char const* asUtf8() const { return reinterpret_cast<unsigned char const*>(m_memory.get()); }
    unsigned short const* asUnits() const { return reinterpret_cast<unsigned short const*>(m_memory.get()); }

private:
    Exact<Element> m_memory;
};

Units decoded(VynCharSet cs, void const* source, unsigned long room, bool* illegal = nullptr) {
    Units units(room + 1, u'\0');
    units.resize(converterOf(cs).toUTF16(reinterpret_cast<unsigned short*>(units.data()), source, room, ILLCHAR_REPLACE,
                                         illegal, -1));
    return units;
}

/// As the local functions read: in ISO 8859-1 what the set does not hold.
Units decodedOrLatin1(VynCharSet cs, void const* source, unsigned long room) {
    bool illegal = false;
    Units const units = decoded(cs, source, room, &illegal);
    return illegal ? decoded(VYNCS_ISO_8859_1, source, room) : units;
}

Bytes encoded(VynCharSet cs, Units units, unsigned long room, ILLCHAR_OPTYPE op = ILLCHAR_REPLACE) {
    units.append(2, u'\0');                     // an escape in UTF-8 takes the first one along
    Bytes bytes(room + units.size() + 4, '\0'); // and is charged a byte less than it has
    bytes.resize(converterOf(cs).fromUTF16(bytes.data(), asUnits(units.data()), room, op, nullptr));
    return bytes;
}

/// Calls `convert(dst, size)` with a destination of exactly the size that the input chooses. What it makes has to be what
/// `make(room)` makes in the room beside the terminator.
template <class Element, class Make, class Convert>
void requireMakes(char const* what, Place end, std::size_t terminator, unsigned long ample, Make make,
                  Convert convert) {
    std::size_t const size = end.in(make(ample).size() + terminator);
    auto const expected = size >= terminator ? make(size - terminator) : decltype(make(0))();
    static_assert(sizeof(Element) == sizeof(expected[0]));
    Exact<Element> const dst(size);
    std::fill_n(dst.get(), size, static_cast<Element>(0xA5));
    unsigned long const count = convert(dst.get(), size);
    require(count == expected.size(), what, "size", size, "elements", count, "expected", expected.size());
    if (count == 0)
        return;
    require(std::memcmp(dst.get(), expected.data(), count * sizeof(Element)) == 0, what, "size", size);
    require(std::all_of(&dst[count], &dst[count] + terminator, [](Element e) { return e == 0; }), "it is terminated",
            what);
}

/// The same for units that are encoded.
template <class Element, class Convert>
void requireEncodes(char const* what, Place end, VynCharSet cs, Units const& units, Convert convert) {
    auto const make = [&](unsigned long room) { return encoded(cs, units, room); };
    requireMakes<Element>(what, end, GetNullCharSize(cs), 24 * units.size(), make, convert);
}

void localToUtf8(VynCharSet cs, Place end, Bytes const& text) {
    Source<char> const source(text, GetNullCharSize(cs));
    Units const units = decodedOrLatin1(cs, source.data(), std::strlen(source.data()));
    requireEncodes<unsigned char>("LocalToUTF8", end, VYNCS_UTF8, units, [&](unsigned char* dst, unsigned long size) {
        return LocalToUTF8(dst, source.data(), size, cs);
    });
}

void utf8ToLocal(VynCharSet cs, Place end, Bytes const& text) {
    Source<char> const source(text);
    Units const units = decoded(VYNCS_UTF8, source.data(), text.size());
    requireEncodes<char>("UTF8ToLocal", end, cs, units,
                         [&](char* dst, unsigned long size) { return UTF8ToLocal(dst, source.asUtf8(), size, cs); });
}

void localToUtf16(VynCharSet cs, Place end, Bytes const& text) {
    Source<char> const source(text, GetNullCharSize(cs));
    auto const make = [&](unsigned long room) { return decodedOrLatin1(cs, source.data(), room); };
    requireMakes<unsigned short>("LocalToUTF16", end, 1, text.size(), make, [&](unsigned short* dst, auto size) {
        require(LocalToUTF16(dst, source.data(), -static_cast<int>(size), cs) == 0, "no size is below 0");
        return LocalToUTF16(dst, source.data(), static_cast<int>(size), cs);
    });
}

void utf8ToUtf16(VynCharSet, Place end, Bytes const& text) {
    Source<char> const source(text);
    auto const make = [&](unsigned long room) { return decoded(VYNCS_UTF8, source.data(), room); };
    requireMakes<unsigned short>("UTF8ToUTF16", end, 1, text.size(), make, [&](unsigned short* dst, auto size) {
        return UTF8ToUTF16(dst, source.asUtf8(), size);
    });
}

void utf16ToLocal(VynCharSet cs, Place end, Units const& units) {
    Source<char16_t> const source(units);
    requireEncodes<char>("UTF16ToLocal", end, cs, units,
                         [&](char* dst, unsigned long size) { return UTF16ToLocal(dst, source.asUnits(), size, cs); });
}

void utf16ToUtf8(VynCharSet, Place end, Units const& units) {
    Source<char16_t> const source(units);
    requireEncodes<unsigned char>("UTF16ToUTF8", end, VYNCS_UTF8, units, [&](unsigned char* dst, unsigned long size) {
        return UTF16ToUTF8(dst, source.asUnits(), size);
    });
}

/// Each "U+" with four digits gives way to its unit, which begins no other.
Units withoutEscapes(Units const& units) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    Units result;
    for (std::size_t at = 0; at < units.size(); ++at) {
        std::u16string_view const escape = std::u16string_view(units).substr(at, 6);
        bool const complete =
            escape.size() == 6 && escape.starts_with(u"U+") && escape.find_first_not_of(digits, 2) == escape.npos;
        unsigned value = 0;
        for (char16_t const digit : escape.substr(std::min<std::size_t>(2, escape.size())))
            value = value << 4 | static_cast<unsigned>(digits.find(digit) & 0xF);
        result += complete ? static_cast<char16_t>(value) : units[at];
        at += complete ? 5 : 0;
    }
    return result;
}

void localPathToUtf8(VynCharSet, Place end, Bytes const& text) {
    Source<char> const source(text);
    Units const units = withoutEscapes(decoded(VYNCS_OS_DEFAULT, source.data(), text.size()));
    requireEncodes<unsigned char>("LocalPathToUTF8", end, VYNCS_UTF8, units, [&](unsigned char* dst, auto size) {
        require(LocalPathToUTF8(dst, source.data(), -static_cast<int>(size)) == 0, "no size is below 0");
        return LocalPathToUTF8(dst, source.data(), static_cast<int>(size));
    });
}

/// The converter of UTF-8 leaves its room where it escapes: of what it makes of the whole, what fits.
Bytes escapedInUtf8(Units const& units, unsigned long room) {
    Bytes fitting;
    for (std::size_t at = 0; at < units.size();) {
        bool const isHigh = (units[at] & 0xFC00) == 0xD800;
        std::size_t const taken = isHigh ? 2 : 1; // an escape drops the unit after its own
        Bytes const character = encoded(VYNCS_UTF8, units.substr(at, taken), 8, ILLCHAR_ESCAPE);
        if (units[at] == 0 || fitting.size() + character.size() > room)
            return fitting;
        fitting += character;
        at += taken;
    }
    return fitting;
}

void utf8ToLocalPath(VynCharSet, Place end, Bytes const& text) {
    Source<char> const source(text);
    bool const isUtf8 = &converterOf(VYNCS_OS_DEFAULT) == &converterOf(VYNCS_UTF8);
    Units const units = decoded(VYNCS_UTF8, source.data(), text.size());
    auto const make = [&](unsigned long room) {
        return isUtf8 ? escapedInUtf8(units, room) : encoded(VYNCS_OS_DEFAULT, units, room, ILLCHAR_ESCAPE);
    };
    requireMakes<char>("UTF8ToLocalPath", end, 1, 24 * units.size(), make, [&](char* dst, unsigned long size) {
        require(UTF8ToLocalPath(dst, source.asUtf8(), -static_cast<int>(size)) == 0, "no size is below 0");
        return UTF8ToLocalPath(dst, source.asUtf8(), static_cast<int>(size));
    });
}

void countAndCompare(VynCharSet cs, Place end, Units const& units) {
    Source<char16_t> const source(units);
    Source<char16_t> const other(units.substr(0, end.in(units.size())));
    std::size_t const length = std::u16string_view(source.data()).size();
    require(VynCharSetWStrlen(source.asUnits()) == length, "the length is that before the zero");
    require(VynCharSetWStrEqual(source.asUnits(), other.asUnits()) ==
                (std::u16string_view(source.data()) == std::u16string_view(other.data())),
            "texts are equal up to their zeros");
    require(GetNumBytes(source.asUnits(), cs) == converterOf(cs).getNumBytes(source.asUnits(), length),
            "the bytes of a terminated text are those of its length", cs);
}

void count(VynCharSet cs, Place, Bytes const& text) {
    Source<char> const source(text, GetNullCharSize(cs));
    require(GetNumUnits(source.data(), cs) == converterOf(cs).getNumUnits(source.data(), ~0UL),
            "the units of a terminated text are those of all that there is", cs);
}

constexpr void (*ofBytes[])(VynCharSet, Place, Bytes const&) = {
    localToUtf8, utf8ToLocal, localToUtf16, utf8ToUtf16, localPathToUtf8, utf8ToLocalPath, count};
constexpr void (*ofUnits[])(VynCharSet, Place, Units const&) = {utf16ToLocal, utf16ToUtf8, countAndCompare};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    VynCharSet const cs = input.among(namedSets);
    Place const end = input.place();
    if (input.flag())
        input.among(ofUnits)(cs, end, input.units());
    else
        input.among(ofBytes)(cs, end, input.text());
    return 0;
}
