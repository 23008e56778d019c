#pragma once

#include <vynulib/Transcoding.h>
#include <vynulib/VynCharSetConverter.h>

#include <span>

namespace vyn {

struct Losses;

/// How texts with a length are converted in a set, whose `converter` lends its tables.
struct SetOperations {
    using Progress = vynulib::Progress;

    Progress (*decode)(VynCharSetConverter* converter, std::string_view source, char16_t* dst, std::size_t room,
                       bool last, Losses& losses);
    Progress (*encode)(VynCharSetConverter* converter, std::u16string_view source, char* dst, std::size_t room,
                       bool last, Losses& losses);
    unsigned elementSize;        ///< Bytes of an element: a byte, a unit, a value.
    unsigned maxUnitsPerElement; ///< Units that an element becomes at most.
    unsigned maxElementsPerUnit; ///< Elements that a unit becomes at most, escapes apart.
    bool unicode;                ///< Whether U+FFFD can be written.
    bool loneSurrogates;         ///< Whether a surrogate by itself is a character.
};

extern SetOperations const singleByteOperations, doubleByteOperations, doubleByteExOperations, eucCnKrOperations,
    eucJpOperations, gb18030Operations, utf8Operations, utf16EscOperations, utf16LeOperations, utf16BeOperations,
    utf32LeOperations, utf32BeOperations;

struct ServedSet {
    VynCharSet cs;
    VynCharSetConverter* converter; ///< Null for a set that only texts with a length are converted in.
    SetOperations const* operations;
};

/// The sets with a converter, in the order in which the registry takes them.
std::span<ServedSet const> registeredSets();

/// The served set of this number; null if there is none.
ServedSet const* servedSet(VynCharSet cs) noexcept;

/// The same, of the default set for `VYNCS_OS_DEFAULT`. Throws `std::invalid_argument` if there is none.
ServedSet const& requireServedSet(VynCharSet cs);

} // namespace vyn
