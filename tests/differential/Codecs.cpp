#include "tests/differential/Codecs.h"

#include <unicode/ucnv.h>

#include <memory>

namespace {

// Roomy for what one character becomes in any set, in units and in bytes.
constexpr int characterRoom = 32;

/// What `convert(out, failed)` writes; its result is the number of elements.
template <class Element, class Convert>
std::optional<std::basic_string<Element>> strictly(Convert convert) {
    Element out[characterRoom + sizeof(char32_t)]; // and any set's terminator
    bool failed = false;
    auto const count = static_cast<std::size_t>(convert(out, failed));
    if (failed || count == 0)
        return std::nullopt;
    return std::basic_string<Element>(out, count);
}

} // namespace

Codec libraryCodec(VynCharSet set) {
    VynCharSetConverter* const converter = VynCharSetConverter::getConverter(set);
    auto const decode = [converter, set](std::string code) {
        std::size_t const size = code.size();
        code.resize(characterRoom + sizeof(char32_t));
        return strictly<char16_t>([&](char16_t* out, bool& failed) {
            // UTF-16 copies nothing without a source limit.
            auto const count = converter->toUTF16(reinterpret_cast<unsigned short*>(out), code.data(), characterRoom,
                                                  ILLCHAR_STOP, &failed, characterRoom);
            // UTF-8 raises the flag for every four-byte sequence, well-formed ones too: its pair is a result all the
            // same.
            failed &= set != VYNCS_UTF8 || count != 2 || size != 4;
            return count;
        });
    };
    auto const encode = [converter](std::u16string const& text) {
        return strictly<char>([&](char* out, bool& failed) {
            auto const* const source = reinterpret_cast<unsigned short const*>(text.c_str());
            return converter->fromUTF16(out, source, characterRoom, ILLCHAR_STOP, &failed);
        });
    };
    return {decode, encode};
}

std::optional<Codec> icuCodec(char const* name) {
    UErrorCode openStatus = U_ZERO_ERROR;
    std::shared_ptr<UConverter> const converter(ucnv_open(name, &openStatus), ucnv_close);
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &openStatus);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &openStatus);
    if (U_FAILURE(openStatus))
        return std::nullopt;
    auto const convert = [converter](auto function, auto* out, bool& failed, auto const& source) {
        UErrorCode status = U_ZERO_ERROR;
        auto const size = static_cast<std::int32_t>(source.size());
        auto const count = function(converter.get(), out, characterRoom, source.data(), size, &status);
        failed = U_FAILURE(status);
        return count;
    };
    return Codec{[convert](std::string const& code) {
                     return strictly<char16_t>(
                         [&](auto* out, bool& f) { return convert(ucnv_toUChars, out, f, code); });
                 },
                 [convert](std::u16string const& text) {
                     return strictly<char>([&](auto* out, bool& f) { return convert(ucnv_fromUChars, out, f, text); });
                 }};
}

std::string icuConverterName(char const* name) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<UConverter, decltype(&ucnv_close)> const converter(ucnv_open(name, &status), ucnv_close);
    char const* const opened = ucnv_getName(converter.get(), &status);
    return U_SUCCESS(status) ? opened : "";
}

std::set<std::string> icuAliases() {
    std::set<std::string> aliases;
    UErrorCode status = U_ZERO_ERROR;
    for (std::int32_t i = 0; i < ucnv_countAvailable(); ++i) {
        char const* const name = ucnv_getAvailableName(i);
        for (std::uint16_t alias = 0; alias < ucnv_countAliases(name, &status); ++alias)
            aliases.insert(ucnv_getAlias(name, alias, &status));
    }
    return aliases;
}
