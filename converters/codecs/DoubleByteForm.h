#pragma once

#include "converters/loops/CodecStep.h"

namespace vyn {

/// How the bytes of a double-byte set make characters, by its type table.
class DoubleByteForm {
public:
    explicit constexpr DoubleByteForm(unsigned char const* types) : m_types(types) {}

    bool isLead(unsigned char byte) const { return (m_types[byte] & 0x40) != 0; }
    bool isTrail(unsigned char byte) const { return (m_types[byte] & 0x80) != 0; }

    /// Decodes the character at `at` with the table `forward`. Of a lead byte without a trail byte only the lead byte
    /// is taken; the terminator is no trail byte.
    template <class Table>
    Decoded decodeOne(unsigned char const* at, Table const& forward) const {
        unsigned const byte = at[0];
        if (!isLead(at[0]))
            return lookedUp(forward.lookup(static_cast<unsigned short>(byte)), 1);
        if (!isTrail(at[1]))
            return malformed(1);
        return lookedUp(forward.lookup(static_cast<unsigned short>(byte << 8 | at[1])), 2);
    }

    /// The same where the byte behind the first can be read whatever that is: without a branch between one byte and two,
    /// which alternate in real text.
    template <class Table>
    Decoded decodeAhead(unsigned char const* at, Table const& forward) const {
        bool const lead = isLead(at[0]);
        if (lead > isTrail(at[1])) // a lead byte and no trail byte, in one test
            return malformed(1);
        unsigned const shift = lead ? 8 : 0;
        unsigned const code = (unsigned{at[0]} << shift) | (at[1] & ((1U << shift) - 1));
        return lookedUp(forward.lookup(static_cast<unsigned short>(code)), lead ? 2 : 1);
    }

    /// A code as its one or two bytes, 0 being none.
    static Encoded encoded(unsigned code, unsigned units) {
        if (code == 0)
            return {0, 0, units, Verdict::Unmapped};
        return {code, code < 0x100 ? 1U : 2U, units, Verdict::Mapped};
    }

private:
    unsigned char const* m_types;
};

} // namespace vyn
