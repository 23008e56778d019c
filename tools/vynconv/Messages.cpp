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
    std::string shown;
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        bool const control = byte < ' ' || byte == 0x7F || (byte > 0x7F && !utf8);
        if (control) {
            shown += "\\x";
            appendHexadecimal(shown, byte);
        } else {
            shown += c;
        }
    }
    return shown;
}

std::string describe(Losses const& losses) {
    std::string text = std::to_string(losses.count);
    text +=
        losses.count == 1 ? " character could not be converted, " : " characters could not be converted, the first ";
    text += "in line " + std::to_string(losses.line) + ": bytes";
    for (char const c : losses.bytes) {
        text += ' ';
        appendHexadecimal(text, static_cast<unsigned char>(c));
    }
    text += " at offset " + std::to_string(losses.offset) + ", not in ";
    text += vynulib::preferredName(losses.lackedBy);
    return losses.stopped ? text + "; stopped there" : text;
}

void printMessage(std::string const& text) {
    std::fprintf(stderr, "vynconv: %s\n", text.c_str());
}

} // namespace vynconv
