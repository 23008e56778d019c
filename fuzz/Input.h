#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

/// A place in, or a little beyond, something whose size is known only later.
struct Place {
    unsigned kind;
    unsigned fraction; ///< Of 65,536.

    /// For half of the kinds close to the end, otherwise anywhere before it.
    std::size_t in(std::size_t size) const {
        if (kind >= 0x80)
            return size * fraction >> 16;
        std::size_t const ahead = kind % 16; // kind 0 is the end
        return ahead < 8 ? size + ahead : size - std::min(size, ahead - 7);
    }
};

/// A fuzzer's bytes, read as the choices of a test and the text that it is about. Where they end, all that follows is 0.
///
/// What is common is what small bytes say: a text of no choices is a text as it stands, whole and in ample room.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : m_rest(reinterpret_cast<char const*>(data), size) {}

    bool empty() const { return m_rest.empty(); }

    unsigned byte() {
        if (m_rest.empty())
            return 0;
        auto const value = static_cast<unsigned char>(m_rest.front());
        m_rest.remove_prefix(1);
        return value;
    }
    bool flag() { return byte() % 2 != 0; }

    /// A number from 0 to `most`, of one byte or two.
    std::size_t upTo(std::size_t most) {
        std::size_t value = byte();
        if (most > 0xFF)
            value = value << 8 | byte();
        return value % (most + 1);
    }

    template <class Rows>
    auto const& among(Rows const& rows) {
        return rows[upTo(std::size(rows) - 1)];
    }

    Place place() {
        unsigned const kind = byte();
        return {kind, static_cast<unsigned>(upTo(0xFFFF))};
    }

    /// All that follows, of which up to 16 bytes stand again and again until the text has about as many bytes as one of
    /// `lengths`: so a short input crosses the boundaries at which conversions change their ways.
    std::string text() {
        std::size_t const wanted = place().in(among(lengths));
        std::size_t const position = byte();
        std::size_t const period = 1 + byte() % 16;
        std::string result(m_rest);
        m_rest = {};
        std::string const repeated = result.substr(std::min(position, result.size()), period);
        if (!repeated.empty() && result.size() < wanted) {
            std::string stretch;
            while (result.size() + stretch.size() < wanted)
                stretch += repeated;
            result.insert(position, stretch);
        }
        return result;
    }

    /// The same as UTF-16 units, the low byte first.
    std::u16string units() {
        std::string const bytes = text();
        std::u16string result(bytes.size() / 2, u'\0');
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                              static_cast<unsigned char>(bytes[2 * i + 1]) << 8);
        return result;
    }

    /// A unit, of one byte where it is in most of ISO 8859-1.
    char16_t unit() {
        unsigned const value = byte();
        return static_cast<char16_t>(value < 0xF0 ? value : upTo(0xFFFF));
    }

    /// A short text: the number of its units stands before them.
    std::u16string word() {
        std::u16string result(upTo(20), u'\0');
        for (char16_t& each : result)
            each = unit();
        return result;
    }

private:
    /// Most texts stay as they are. 257 units are what a string holds without a heap array; pieces inside the library
    /// are of 2,048 units, path buffers of 4,096 bytes.
    static constexpr std::size_t lengths[] = {0, 0, 0, 0, 0, 0, 0, 0, 40, 257, 514, 2048, 4096, 8192};

    std::string_view m_rest;
};
