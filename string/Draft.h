#pragma once

#include <vynulib/VynUString.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

/// The next text of a string while it is written. Only here does a string's record get another text, so that every
/// writer keeps the rules of the storage:
///
/// - The text is written where it fits, or else into a new array, which is the draft's until `keep` makes it the
///   string's. So whatever throws before `keep` leaves the string as it was, but for units past its end. What is
///   written over the string's own units must not fail midway.
/// - A zero unit ends the text, and what was never written is never shown: the rest of a new array is cleared, and a
///   mark tells how far the units in the object were ever written.
/// - The old array lives until `keep`: a source may be part of the old text.
class __attribute__((visibility("hidden"))) VynUString::Draft {
public:
    /// Makes room for `n` units. Throws `std::bad_alloc`, or `std::bad_array_new_length` where no array is so large.
    Draft(VynUString& string, unsigned long n) : m_string(string), m_room(n) {
        if (n > string.capacity())
            m_newArray.reset(newArray(n));
    }
    Draft(Draft const&) = delete;
    Draft& operator=(Draft const&) = delete;

    bool isNewArray() const noexcept { return m_newArray != nullptr; }

    unsigned short* units() const noexcept { return m_newArray ? m_newArray.get() : m_string.m_oRep.m_pText; }

    /// Clears those of the `n` units that were never written, for a writer that may leave some out.
    void clearUnwritten() noexcept {
        if (m_newArray)
            std::fill_n(m_newArray.get(), m_room, zeroUnit);
        else if (m_string.m_oRep.m_uHeap == 0 && m_room > m_string.m_uInlineWritten)
            std::fill(m_string.m_aInline + m_string.m_uInlineWritten, m_string.m_aInline + m_room, zeroUnit);
    }

    /// Makes the first `length` units, all of them written, the string's text and drops its cached byte text.
    void keep(unsigned long length) noexcept {
        keepBesideBytes(length);
        if (m_string.m_oRep.m_pSecText != nullptr)
            m_string.freeSecText();
    }

    /// The same, beside a cached byte text of what was before.
    void keepBesideBytes(unsigned long length) noexcept {
        if (m_newArray)
            install(m_string, m_newArray.release(), m_room, length);
        else
            endTextAt(m_string, length);
    }

    /// Makes the `n` units at `source`, which may be part of the string's own text, the text of a string.
    static void write(VynUString& string, unsigned short const* source, unsigned long n) {
        Draft draft(string, n);
        std::memmove(draft.units(), source, n * sizeof(unsigned short));
        draft.keep(n);
    }

    /// Sets the record of a string up anew, empty and in the object. Releases nothing.
    static void setUp(VynUString& string) noexcept {
        string.m_oRep = {0, string.m_aInline, 0, inlineCapacity, nullptr, 0, static_cast<VynCharSet>(-1)};
        endTextAt(string, 0);
    }

    /// Moves text and cached byte text of `from`, which becomes empty, into `to`, whose record is set up anew.
    static void move(VynUString& to, VynUString& from) noexcept {
        to.initForAlloc();
        Representation const taken = from.m_oRep;
        if (taken.m_uHeap != 0) {
            to.m_oRep = taken;
        } else {
            std::memcpy(to.m_aInline, taken.m_pText, taken.m_ulLength * sizeof(unsigned short));
            endTextAt(to, taken.m_ulLength);
            to.m_oRep.m_pSecText = taken.m_pSecText;
            to.m_oRep.m_ulSecLength = taken.m_ulSecLength;
            to.m_oRep.m_eSecCharSet = taken.m_eSecCharSet;
        }
        from.initForAlloc();
    }

    static void releaseArray(VynUString& string) noexcept {
        if (string.m_oRep.m_uHeap != 0)
            delete[] string.m_oRep.m_pText;
    }

private:
    static constexpr unsigned short zeroUnit = 0;

    static unsigned short* newArray(unsigned long n) {
        if (n >= npos / sizeof(unsigned short))
            throw std::bad_array_new_length();
        return new unsigned short[n + 1];
    }

    // Out of line, as no short string needs it: a string is constructed inline.
    static void install(VynUString& string, unsigned short* array, unsigned long capacity,
                        unsigned long length) noexcept;

    static void endTextAt(VynUString& string, unsigned long n) noexcept {
        string.m_oRep.m_pText[n] = 0;
        string.m_oRep.m_ulLength = n;
        if (string.m_oRep.m_uHeap == 0 && n >= string.m_uInlineWritten)
            string.m_uInlineWritten = static_cast<unsigned int>(n + 1);
    }

    VynUString& m_string;
    unsigned long m_room;                         // units; the capacity of the new array, if there is one
    std::unique_ptr<unsigned short[]> m_newArray; // until it is kept
};
