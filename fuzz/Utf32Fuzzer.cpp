// The direct way between UTF-8 and UTF-32, in memory of exactly the documented size, against its rules in plain form.

#include "fuzz/Exact.h"
#include "fuzz/Input.h"
#include "fuzz/Require.h"

#include <vynulib/VynCharSetConverterUTF32.h>

#include <cstring>

namespace {

constexpr unsigned replacement = 0xFFFD;

/// Sequences of several bytes: their leads, and the values that need as many. The rest is in six bits a byte.
constexpr struct {
    unsigned firstLead, lastLead, length, least;
} forms[] = {{0xC0, 0xDF, 2, 0x80},
             {0xE0, 0xEF, 3, 0x800},
             {0xF0, 0xF7, 4, 0x10000},
             {0xF8, 0xFB, 5, 0x200000},
             {0xFC, 0xFD, 6, 0x4000000}};

bool isSurrogate(unsigned value) {
    return value >= 0xD800 && value <= 0xDFFF;
}

/// The value at the beginning of `text`, which moves past it.
unsigned takeValue(std::string_view& text) {
    auto const byteAt = [&](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
    unsigned const lead = byteAt(0);
    unsigned value = lead < 0x80 ? lead : replacement;
    std::size_t length = 1;
    for (auto const& form : forms) {
        if (lead < form.firstLead || lead > form.lastLead)
            continue;
        unsigned assembled = lead - form.firstLead;
        std::size_t trails = 1;
        for (; trails < form.length && (byteAt(trails) & 0xC0) == 0x80; ++trails)
            assembled = assembled << 6 | (byteAt(trails) & 0x3F);
        if (trails < form.length)
            break;
        length = form.length;
        bool const excluded = isSurrogate(assembled) || assembled == 0xFFFE || assembled == 0xFFFF;
        value = assembled < form.least || excluded ? replacement : assembled;
    }
    text.remove_prefix(length);
    return value;
}

std::string sequenceOf(unsigned value) {
    if (value < 0x80)
        return std::string(1, static_cast<char>(value));
    auto form = std::begin(forms);
    while (form + 1 != std::end(forms) && value >= form[1].least)
        ++form;
    std::string sequence;
    for (unsigned shift = 6 * (form->length - 1); shift != 0; shift -= 6)
        sequence += static_cast<char>(shift == 6 * (form->length - 1) ? form->firstLead | value >> shift
                                                                      : 0x80 | (value >> shift & 0x3F));
    return sequence + static_cast<char>(0x80 | (value & 0x3F));
}

void fromUtf8(VynCharSetConverterUTF32& utf32, Place end, std::string const& bytes) {
    std::string_view const text(bytes.c_str());
    std::size_t const room = end.in(text.size());
    std::u32string expected;
    for (std::string_view rest = text; !rest.empty() && expected.size() < room;)
        expected += static_cast<char32_t>(takeValue(rest));

    Exact<unsigned char> const source(text.size() + 1);
    *std::copy(text.begin(), text.end(), source.get()) = 0;
    unsigned char* at = source.get();
    for (char32_t const value : expected)
        require(utf32.UTF32fromUTF8(&at) == value, "a value from UTF-8");
    Exact<char32_t> const dst(room + 1);
    bool illegal = true;
    unsigned long const count = utf32.fromUTF8(dst.get(), source.get(), room, ILLCHAR_REPLACE, &illegal);
    require(count == expected.size() && !illegal, "values from UTF-8", "room", room, "got", count);
    require(std::u32string_view(dst.get(), count) == expected && dst[count] == 0, "the values from UTF-8", room);
}

void toUtf8(VynCharSetConverterUTF32& utf32, Place end, std::string const& bytes) {
    std::size_t const values = bytes.size() / 4;
    Exact<unsigned> const source(values + 1);
    source[values] = 0;
    std::memcpy(source.get(), bytes.data(), values * 4);
    std::size_t const room = end.in(6 * values); // of the longest sequences
    std::string expected;
    bool lossy = false;
    for (std::size_t at = 0; source[at] != 0 && expected.size() < room; ++at) {
        bool const lost = isSurrogate(source[at]) || source[at] >= 0x80000000;
        expected += sequenceOf(lost ? replacement : source[at]);
        lossy = lossy || lost;
    }

    Exact<unsigned char> const dst(room + 5); // room is tested after each character
    bool illegal = true;
    unsigned long const count = utf32.toUTF8(dst.get(), source.get(), room, ILLCHAR_REPLACE, &illegal);
    require(count == expected.size() && illegal == lossy, "bytes in UTF-8", "room", room, "got", count);
    require(std::memcmp(dst.get(), expected.data(), count) == 0, "the bytes in UTF-8", room);
    require(count > room || dst[count] == 0, "bytes that fit are terminated", room);
}

constexpr void (*tests[])(VynCharSetConverterUTF32&, Place, std::string const&) = {fromUtf8, toUtf8};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    auto const test = input.among(tests);
    Place const end = input.place();
    test(dynamic_cast<VynCharSetConverterUTF32&>(*VynCharSetConverter::getConverter(VYNCS_UTF32)), end, input.text());
    return 0;
}
