#pragma once

#include "charset/ServedSets.h"

#include <algorithm>

namespace vyn {

/// A text that ends at a terminator, in UTF-16: piece after piece on the stack, each with a zero unit after it.
class UnitPieces {
public:
    /// Of at most `most` units.
    UnitPieces(ServedSet const& set, void const* src, std::size_t most) : m_set(set), m_src(src), m_left(most) {}

    /// Goes on to the next piece, which begins with what was held of the last one.
    void next() {
        std::copy_n(m_held, m_heldCount, m_units);
        std::size_t const room = std::min(pieceUnits - m_heldCount, m_left);
        auto const found = m_set.operations->decodePart(m_set.converter, m_src, m_units + m_heldCount, room);
        m_isLast = room == m_left || room - found.units >= 2; // more would have fit, even a pair
        m_src = found.src;
        m_left -= found.units;
        m_sawIllegal |= found.sawIllegal;
        m_count = m_heldCount + found.units;
        m_heldCount = 0;
        m_units[m_count] = 0;
    }

    /// After an edit that left fewer units.
    void shorten(std::size_t count) { m_count = count; }

    /// Takes the last `count` units out of the piece and into the next one.
    void hold(std::size_t count) {
        m_count -= count;
        m_heldCount = count;
        std::copy_n(m_units + m_count, count, m_held);
        m_units[m_count] = 0;
    }

    unsigned short* units() { return m_units; }
    std::size_t count() const { return m_count; }
    bool isLast() const { return m_isLast; }
    bool sawIllegal() const { return m_sawIllegal; } ///< Up to the end of the piece.

private:
    static constexpr std::size_t pieceUnits = 4096; // stay in the first-level cache
    static constexpr std::size_t mostHeld = 8;

    ServedSet const& m_set;
    void const* m_src;
    std::size_t m_left;
    std::size_t m_count = 0, m_heldCount = 0;
    bool m_isLast = false, m_sawIllegal = false;
    unsigned short m_held[mostHeld];
    unsigned short m_units[pieceUnits + 1];
};

} // namespace vyn
