#pragma once

#include <vynulib/Transcoding.h>
#include <vynulib/VynCharSetConverter.h>

#include <span>

namespace vyn {

struct Losses;

/// How texts are converted in a set, whose `converter` lends its tables.
struct SetOperations {
    using Progress = vynulib::Progress;

    /// What became of a part of a text that ends at a terminator.
    struct Decoded {
        void const* src;   ///< Where it goes on.
        std::size_t units; ///< That were written.
        bool sawIllegal;
    };
    struct Encoded {
        std::size_t units; ///< That were read.
        std::size_t bytes; ///< That were written.
    };

    Progress (*decode)(VynCharSetConverter* converter, std::string_view source, char16_t* dst, std::size_t room,
                       bool last, Losses& losses);
    Progress (*encode)(VynCharSetConverter* converter, std::u16string_view source, char* dst, std::size_t room,
                       bool last, Losses& losses);
    unsigned elementSize;        ///< Bytes of an element: a byte, a unit, a value.
    unsigned maxUnitsPerElement; ///< Units that an element becomes at most.
    unsigned maxElementsPerUnit; ///< Elements that a unit becomes at most, escapes apart.
    bool unicode;                ///< Whether U+FFFD can be written.
    bool loneSurrogates;         ///< Whether a surrogate by itself is a character.

    // Null for a set without a converter:

    /// As the converter does without a source limit and with `ILLCHAR_REPLACE`, but ends before a pair that does not fit,
    /// so that it can go on there.
    Decoded (*decodePart)(VynCharSetConverter* converter, void const* src, unsigned short* dst,
                          std::size_t room) = nullptr;

    /// As the converter does. The escapes of UTF-8 keep to the room, too.
    Encoded (*encodePart)(VynCharSetConverter* converter, unsigned short const* src, void* dst, std::size_t room,
                          ILLCHAR_OPTYPE op) = nullptr;
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

/// The served set whose converter serves `cs`, which may be the default set or one without a converter of its own; null if
/// that is somebody else's converter.
ServedSet const* setBehind(VynCharSet cs);

/// The served set of this number, the default set for `VYNCS_OS_DEFAULT`. Throws `std::invalid_argument` if there is none.
ServedSet const& requireServedSet(VynCharSet cs);

} // namespace vyn
