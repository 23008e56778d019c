#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vyn {

/// A text that ends at a terminator, from a read position on. An element may be looked at where all before it are there,
/// which `has` tells: so nothing after the terminator is ever read.
template <class E>
struct Terminated {
    using Element = E;

    Element const* at;

    Element operator[](unsigned i) const { return at[i]; }
    bool has(unsigned i) const { return at[i] != 0; }
};
template <class E>
Terminated(E const*) -> Terminated<E>;

/// A text of which the first two elements are no terminator.
template <class E>
struct TerminatedLater {
    using Element = E;
    static constexpr long certain = 2;

    Element const* at;

    Element operator[](unsigned i) const { return at[i]; }
    bool has(unsigned i) const { return i < 2 || at[i] != 0; }
};

/// A text that ends at a terminator or after `left` elements, whichever comes first.
template <class E>
struct Limited {
    using Element = E;

    Element const* at;
    unsigned long left;

    Element operator[](unsigned i) const { return at[i]; }
    bool has(unsigned i) const { return i < left && at[i] != 0; }
};
template <class E>
Limited(E const*, unsigned long) -> Limited<E>;

/// A text that ends after `left` elements: zeros are elements like others.
template <class E>
struct Bounded {
    using Element = E;

    Element const* at;
    std::size_t left;

    Element operator[](unsigned i) const { return at[i]; }
    bool has(unsigned i) const { return i < left; }
};
template <class E>
Bounded(E const*, std::size_t) -> Bounded<E>;

/// A text with all that its first character may need.
template <class E>
struct Ample {
    using Element = E;
    static constexpr long certain = 6; // the longest character, an escape

    Element const* at;

    Element operator[](unsigned i) const { return at[i]; }
    static bool has(unsigned) { return true; }
};

/// A 16- or 32-bit element of a text in a byte order, at an address that need not be aligned.
template <class Value, std::endian Order>
class Unaligned {
public:
    Unaligned() = default;
    Unaligned(Value value) {
        value = inOrder(value);
        std::memcpy(m_bytes, &value, sizeof value);
    }

    operator Value() const {
        Value value;
        std::memcpy(&value, m_bytes, sizeof value);
        return inOrder(value);
    }

private:
    static Value inOrder(Value value) {
        if constexpr (Order == std::endian::native)
            return value;
        else if constexpr (sizeof(Value) == 2)
            return __builtin_bswap16(value);
        else
            return __builtin_bswap32(value);
    }

    unsigned char m_bytes[sizeof(Value)];
};

template <std::endian Order>
using Unit16 = Unaligned<std::uint16_t, Order>;
template <std::endian Order>
using Value32 = Unaligned<std::uint32_t, Order>;

static_assert(sizeof(Unit16<std::endian::big>) == 2 && alignof(Unit16<std::endian::big>) == 1);
static_assert(sizeof(Value32<std::endian::big>) == 4 && alignof(Value32<std::endian::big>) == 1);

} // namespace vyn
