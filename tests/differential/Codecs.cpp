#include "tests/differential/Codecs.h"

#include <gnu/libc-version.h>
#include <iconv.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/uversion.h>

#include <memory>
#include <vector>

namespace {

// Roomy for what one character becomes in any set, in units and in bytes.
constexpr int characterRoom = 32;

class Iconv {
public:
    Iconv(char const* to, char const* from) : m_descriptor(iconv_open(to, from)) {}
    Iconv(Iconv const&) = delete;
    Iconv& operator=(Iconv const&) = delete;
    ~Iconv() {
        if (isOpen())
            iconv_close(m_descriptor);
    }
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what iconv_open gives where it fails
    bool isOpen() const { return m_descriptor != reinterpret_cast<iconv_t>(-1); }

    Code convert(std::string source) {
        iconv(m_descriptor, nullptr, nullptr, nullptr, nullptr);
        char bytes[characterRoom];
        char* in = source.data();
        char* out = bytes;
        std::size_t inLeft = source.size();
        std::size_t outLeft = sizeof bytes;
        // A result above 0 counts characters that were only approximated. The second call writes what was held back
        // because a combining character might have followed.
        if (iconv(m_descriptor, &in, &inLeft, &out, &outLeft) != 0 || inLeft != 0 ||
            iconv(m_descriptor, nullptr, nullptr, &out, &outLeft) != 0 || out == bytes)
            return std::nullopt;
        return std::string(bytes, out);
    }

private:
    iconv_t m_descriptor;
};

} // namespace

Codec libraryCodec(VynCharSet set) {
    VynCharSetConverter* const converter = VynCharSetConverter::getConverter(set);
    auto const decode = [converter, set](std::string const& code) -> Text {
        char source[characterRoom] = {}; // zero behind the bytes: the terminator of any set
        code.copy(source, sizeof source - sizeof(char32_t));
        unsigned short units[characterRoom + 1];
        bool illegal = false;
        // UTF-16 copies nothing without a source limit.
        auto const count = converter->toUTF16(units, source, characterRoom, ILLCHAR_STOP, &illegal, characterRoom);
        // UTF-8 raises the flag for every four-byte sequence, well-formed ones too: its pair is a result all the same.
        bool const isPair = set == VYNCS_UTF8 && count == 2 && code.size() == 4;
        if (count == 0 || (illegal && !isPair))
            return std::nullopt;
        return std::u16string(units, units + count);
    };
    auto const encode = [converter](std::u16string const& text) -> Code {
        std::u16string const terminated = text + u'\0';
        std::vector<unsigned short> const source(terminated.begin(), terminated.end());
        char bytes[characterRoom + sizeof(char32_t)];
        bool illegal = false;
        auto const count = converter->fromUTF16(bytes, source.data(), characterRoom, ILLCHAR_STOP, &illegal);
        if (count == 0 || illegal)
            return std::nullopt;
        return std::string(bytes, count);
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
    auto const decode = [converter](std::string const& code) -> Text {
        char16_t units[characterRoom];
        UErrorCode status = U_ZERO_ERROR;
        auto const count = ucnv_toUChars(converter.get(), units, characterRoom, code.data(),
                                         static_cast<std::int32_t>(code.size()), &status);
        if (U_FAILURE(status) || count == 0)
            return std::nullopt;
        return std::u16string(units, static_cast<std::size_t>(count));
    };
    auto const encode = [converter](std::u16string const& text) -> Code {
        char bytes[characterRoom];
        UErrorCode status = U_ZERO_ERROR;
        auto const count = ucnv_fromUChars(converter.get(), bytes, characterRoom, text.data(),
                                           static_cast<std::int32_t>(text.size()), &status);
        if (U_FAILURE(status) || count == 0)
            return std::nullopt;
        return std::string(bytes, static_cast<std::size_t>(count));
    };
    return Codec{decode, encode};
}

std::optional<Codec> glibcCodec(char const* name) {
    auto const decoder = std::make_shared<Iconv>("UTF-16LE", name);
    auto const encoder = std::make_shared<Iconv>(name, "UTF-16LE");
    if (!decoder->isOpen() || !encoder->isOpen())
        return std::nullopt;
    auto const decode = [decoder](std::string const& code) -> Text {
        Code const bytes = decoder->convert(code);
        if (!bytes)
            return std::nullopt;
        std::u16string text(bytes->size() / sizeof(char16_t), u'\0');
        bytes->copy(reinterpret_cast<char*>(text.data()), bytes->size());
        return text;
    };
    auto const encode = [encoder](std::u16string const& text) {
        return encoder->convert({reinterpret_cast<char const*>(text.data()), text.size() * sizeof(char16_t)});
    };
    return Codec{decode, encode};
}

std::string peerVersions() {
    UVersionInfo version;
    char text[U_MAX_VERSION_STRING_LENGTH];
    u_getVersion(version);
    u_versionToString(version, text);
    return std::string("ICU ") + text + ", glibc " + gnu_get_libc_version();
}
