#pragma once

#include "tests/support/GuardedBuffer.h"

#include <vynulib/VynCharSetConverter.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <vector>

using Bytes = std::vector<unsigned char>;
using Units = std::vector<unsigned short>;

/// All policies, and a value that is none.
inline constexpr ILLCHAR_OPTYPE policies[] = {ILLCHAR_STOP, ILLCHAR_REPLACE, ILLCHAR_ESCAPE,
                                              static_cast<ILLCHAR_OPTYPE>(7)};

/// What a conversion made: its output without the terminator, and its flag (false where it was not asked for).
template <class Element>
struct Converted {
    std::vector<Element> output;
    bool illegal = false;

    bool operator==(Converted const&) const = default;

    friend std::ostream& operator<<(std::ostream& out, Converted const& converted) {
        for (Element const element : converted.output)
            out << std::hex << std::setw(2 * sizeof(Element)) << std::setfill('0') << unsigned{element} << ' ';
        return out << (converted.illegal ? "(illegal)" : "(clean)");
    }
};

/// How a conversion is called.
struct Call {
    ILLCHAR_OPTYPE op = ILLCHAR_REPLACE;
    int maxSrc = -1;
    /// Source and destination begin so many elements after an inaccessible page. Negative: they end at one.
    int offset = -1;
    bool withFlag = true;
    bool terminated = true; ///< Whether a terminator stands after the source.
};

/// Runs conversions of one set in guarded memory. A call fails the test where the result exceeds the room, the
/// terminator is missing, or anything but output and terminator was written.
class ConvertKit {
public:
    explicit ConvertKit(VynCharSetConverter& converter) : m_converter(converter) {}

    Converted<unsigned short> decode(Bytes const& source, unsigned long room, Call const& call = {}) {
        return run<unsigned short>(source, m_converter.getNullCharSize(), room, sizeof(unsigned short), call,
                                   [&](unsigned char* dst, unsigned char const* src, bool* illegal) {
                                       return m_converter.toUTF16(reinterpret_cast<unsigned short*>(dst), src, room,
                                                                  call.op, illegal, call.maxSrc);
                                   });
    }

    Converted<unsigned char> encode(Units const& source, unsigned long room, Call const& call = {}) {
        return run<unsigned char>(source, sizeof(unsigned short), room, m_converter.getNullCharSize(), call,
                                  [&](unsigned char* dst, unsigned char const* src, bool* illegal) {
                                      return m_converter.fromUTF16(dst, reinterpret_cast<unsigned short const*>(src),
                                                                   room, call.op, illegal);
                                  });
    }

    /// Counts a terminated source, or one that ends with its last element.
    unsigned long countUnits(Bytes const& source, bool terminated = true) {
        unsigned char const* const src = place(source, terminated ? m_converter.getNullCharSize() : 0, -1);
        return m_converter.getNumUnits(src, terminated ? unbounded : source.size());
    }
    unsigned long countBytes(Units const& source, bool terminated = true) {
        unsigned char const* const src = place(source, terminated ? sizeof(unsigned short) : 0, -1);
        return m_converter.getNumBytes(reinterpret_cast<unsigned short const*>(src),
                                       terminated ? unbounded : source.size());
    }

private:
    static constexpr auto unbounded = static_cast<unsigned long>(-1);
    static constexpr std::size_t bufferSize = 1 << 20;
    static constexpr std::size_t margin = 16; // bytes watched on either side of a destination
    static constexpr unsigned char untouched = 0xA5;

    static unsigned char* within(GuardedBuffer const& buffer, std::size_t size, long offset) {
        return offset < 0 ? buffer.end() - size : buffer.begin() + offset;
    }

    template <class Element>
    unsigned char* place(std::vector<Element> const& source, std::size_t terminatorSize, int offset) {
        std::size_t const size = source.size() * sizeof(Element);
        unsigned char* const src = within(m_source, size + terminatorSize, offset * static_cast<long>(sizeof(Element)));
        std::copy(source.begin(), source.end(), reinterpret_cast<Element*>(src));
        std::fill_n(src + size, terminatorSize, static_cast<unsigned char>(0));
        return src;
    }

    static bool holdsOnly(unsigned char value, unsigned char const* begin, unsigned char const* end) {
        unsigned differences = 0; // no early exit, so that this becomes vector code
        for (; begin != end; ++begin)
            differences |= *begin ^ unsigned { value };
        return differences == 0;
    }

    template <class Out, class In, class Convert>
    Converted<Out> run(std::vector<In> const& source, std::size_t sourceTerminator, std::size_t room,
                       std::size_t terminatorSize, Call const& call, Convert convert) {
        unsigned char const* const src = place(source, call.terminated ? sourceTerminator : 0, call.offset);
        std::size_t const size = room * sizeof(Out) + terminatorSize;
        unsigned char* const dst = within(m_destination, size, call.offset * static_cast<long>(sizeof(Out)));
        unsigned char* const watched =
            dst - std::min<std::size_t>(margin, static_cast<std::size_t>(dst - m_destination.begin()));
        unsigned char* const watchedEnd =
            dst + size + std::min<std::size_t>(margin, static_cast<std::size_t>(m_destination.end() - dst) - size);
        std::fill(watched, watchedEnd, untouched);

        bool illegal = true;
        unsigned long const count = convert(dst, src, call.withFlag ? &illegal : nullptr);

        Converted<Out> result{{}, call.withFlag && illegal};
        if (count > room) {
            ADD_FAILURE() << count << " elements in a room of " << room;
            return result;
        }
        unsigned char const* const terminator = dst + count * sizeof(Out);
        if (!holdsOnly(0, terminator, terminator + terminatorSize))
            ADD_FAILURE() << "no terminator after " << count << " elements in a room of " << room;
        if (!holdsOnly(untouched, watched, dst) || !holdsOnly(untouched, terminator + terminatorSize, watchedEnd))
            ADD_FAILURE() << "wrote outside the output of " << count << " elements in a room of " << room;
        auto const* const output = reinterpret_cast<Out const*>(dst);
        result.output.assign(output, output + count);
        return result;
    }

    VynCharSetConverter& m_converter;
    GuardedBuffer m_source{bufferSize};
    GuardedBuffer m_destination{bufferSize};
};
