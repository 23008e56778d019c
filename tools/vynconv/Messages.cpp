#include "tools/vynconv/Messages.h"

#include <vynulib/Transcoding.h>

#include <cstdio>

namespace vynconv {
namespace {

void appendHexadecimal(std::string& text, unsigned char byte) {
    constexpr char digits[] = "0123456789ABCDEF";
    text += digits[byte >> 4];
    text += digits[byte & 15];
}

} // namespace

std::string printable(std::string_view text) {
    bool const utf8 = vynulib::isValid(VYNCS_UTF8, text);
    // The controls from U+0080 on, whose two bytes are C2 and their number.
    auto const isC1 = [&](std::size_t at) {
        return at + 1 < text.size() && text[at] == '\xC2' && (text[at + 1] & 0xE0) == 0x80;
    };
    std::string shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto const byte = static_cast<unsigned char>(text[i]);
        bool const control = byte < ' ' || byte == 0x7F || isC1(i) || (i != 0 && isC1(i - 1));
        if (control || (byte > 0x7F && !utf8)) {
            shown += "\\x";
            appendHexadecimal(shown, byte);
        } else {
            shown += text[i];
        }
    }
    return shown;
}

std::string describe(Loss const& loss) {
    std::string text = "line " + std::to_string(loss.line) + ": bytes";
    for (char const c : loss.bytes) {
        text += ' ';
        appendHexadecimal(text, static_cast<unsigned char>(c));
    }
    text += " at offset " + std::to_string(loss.offset) + ", not in ";
    return text.append(vynulib::preferredName(loss.lackedBy));
}

std::string describe(Losses const& losses) {
    std::string text = std::to_string(losses.count);
    text += losses.count == 1 ? " character could not be converted, in "
                              : " characters could not be converted, the first in ";
    text += describe(losses.first);
    return losses.stopped ? text + "; stopped there" : text;
}

void printMessage(std::string const& text) {
    std::fprintf(stderr, "vynconv: %s\n", text.c_str());
}

} // namespace vynconv
