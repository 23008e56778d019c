#pragma once

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

/// A text of which the first two elements are no terminator.
template <class E>
struct TerminatedLater {
    using Element = E;

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

/// A 32-bit value of a text whose address need not be aligned.
class UnalignedValue {
public:
    UnalignedValue() = default;
    UnalignedValue(unsigned value) { std::memcpy(m_bytes, &value, sizeof value); }

    operator unsigned() const {
        unsigned value;
        std::memcpy(&value, m_bytes, sizeof value);
        return value;
    }

private:
    unsigned char m_bytes[sizeof(unsigned)];
};

static_assert(sizeof(UnalignedValue) == 4 && alignof(UnalignedValue) == 1);

} // namespace vyn
