#pragma once

/// @file
/// Strict conversion, whole or in pieces.

#include <vynulib/VynCharSet.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Strict conversion that tells every loss and where it stood.
///
///     vynulib::Report report;
///     std::string const utf8 = vynulib::transcode(VYNCS_WCP932, VYNCS_UTF8, bytes, vynulib::OnError::replace, &report);
///     if (report.losses != 0)
///         std::cerr << report.losses << " characters lost, the first at byte " << report.firstLoss << '\n';
///
/// - An element is a byte of a `std::string_view` or a 16-bit unit of a `std::u16string_view`. Every element is text: zeros
///   and byte-order marks are characters like others, no terminator is read or written, and nothing is read outside the
///   source nor written outside the destination.
/// - Served are the sets that have a converter, and `VYNCS_UTF16BE` and `VYNCS_UTF32BE`. `VYNCS_OS_DEFAULT` stands for the
///   default set. Any other number, and a default set without a converter, throws `std::invalid_argument`. Nothing else
///   throws but `std::bad_alloc`, where memory runs out for a result or, at a set's first use, for its tables.
/// - UTF-8, UTF-16 and UTF-32 are Unicode's well-formed sequences only. An ill-formed one is lost with the length of its
///   maximal subpart, as the Unicode standard recommends for U+FFFD; an unpaired surrogate is one loss, and so is a value
///   of UTF-32 that is no character.
/// - In a table set each code that the set's table maps is its character. Everything else is lost as the set's converter
///   replaces it. What `encode` writes, `decode` reads, in every set.
/// - Any number of threads may call at once.
namespace vynulib {

/// Why a conversion in pieces came back.
enum class Status {
    done,         ///< All was converted, but for a character that the end of a piece cuts off.
    roomFull,     ///< The next character does not fit. Give more room and go on with what was not read.
    unconvertible ///< The next `Progress::length` elements can't be converted. Skip them and go on.
};

/// How far a conversion in pieces came.
struct Progress {
    Status status;       ///< Why it came back.
    std::size_t read;    ///< Elements of the source that were converted. What stopped the conversion begins there.
    std::size_t written; ///< Elements that were written to the destination.
    std::size_t length;  ///< `unconvertible`: elements of the source that belong to what was lost; otherwise 0.
};

/// Converts one piece of a text in the set `from` to UTF-16 in the machine's byte order. Writes at most `room` units to
/// `dst`, each character whole or not at all, and no terminator. `last` is false where more follows: a character cut
/// short by the end of the piece is then left unread, and belongs in front of the next piece. Stops before a loss,
/// which the result locates. Pieces cut anywhere give what the whole gives. Throws `std::invalid_argument` for a set
/// that is not served.
///
///     char buffer[4096];
///     char16_t units[4096]; // as many as bytes are always enough
///     std::size_t kept = 0;
///     for (bool last = false; !last;) {
///         std::size_t const got = std::fread(buffer + kept, 1, sizeof buffer - kept, file);
///         last = got == 0;
///         vynulib::Progress const done = vynulib::decode(cs, {buffer, kept + got}, units, 4096, last);
///         ... use units[0] to units[done.written - 1], look at done.status
///         kept = kept + got - done.read;
///         std::memmove(buffer, buffer + done.read, kept);
///     }
VYNULIB_API Progress decode(VynCharSet from, std::string_view source, char16_t* dst, std::size_t room, bool last);

/// Converts one piece of UTF-16 in the machine's byte order to the set `to`. Writes at most `room` bytes to `dst`, each
/// character whole or not at all, and no terminator. `last` is false where more follows: a high surrogate at the end of
/// the piece is then left unread. Stops before a loss, which the result locates in units: one unit, an unpaired
/// surrogate or a character that the set lacks, or the two units of a pair. Throws `std::invalid_argument` for a set
/// that is not served.
VYNULIB_API Progress encode(VynCharSet to, std::u16string_view source, char* dst, std::size_t room, bool last);

/// What becomes of a loss.
enum class OnError {
    stop,    ///< End the result before it.
    replace, ///< Write U+FFFD for it if the result is UTF-16 or in a Unicode set, "?" otherwise.
    escape,  ///< On the way from UTF-16 write "U+XXXX" for each of its units; on the way to it as `replace`.
    drop     ///< Write nothing. It still separates what stands around it.
};

/// What a conversion lost. The functions overwrite it.
struct Report {
    std::size_t losses = 0;                         ///< Characters and malformed sequences; at most 1 with `stop`.
    std::size_t firstLoss = std::string_view::npos; ///< Where the first one begins, in elements of the source.
};

/// Converts one piece of a text from one set to another and goes on through its losses, unless `onError` is `stop`:
/// only then does it come back with `unconvertible`. Writes at most `room` bytes to `dst`, each character, replacement
/// and escape whole or not at all, and no terminator. `last` is false where more follows: a character cut short by the
/// end of the piece is then left unread. `report`, which may be null, tells what this piece lost, by places in it.
/// Pieces cut anywhere give what the whole gives. Throws `std::invalid_argument` for a set that is not served.
VYNULIB_API Progress transcode(VynCharSet from, VynCharSet to, std::string_view source, char* dst, std::size_t room,
                               bool last, OnError onError = OnError::stop, Report* report = nullptr);

/// A whole text in the set `from` as UTF-16 in the machine's byte order. A loss becomes U+FFFD, or what `onError` says;
/// `report`, which may be null, counts them and locates the first in bytes. Throws `std::invalid_argument` for a set
/// that is not served, `std::bad_alloc` where memory runs out.
VYNULIB_API std::u16string decode(VynCharSet from, std::string_view source, OnError onError = OnError::replace,
                                  Report* report = nullptr);

/// A whole text of UTF-16, in the machine's byte order, in the set `to`. A loss becomes U+FFFD in a Unicode set and "?"
/// in others, or what `onError` says; `report`, which may be null, counts them and locates the first in units. Throws
/// `std::invalid_argument` for a set that is not served, `std::bad_alloc` where memory runs out.
VYNULIB_API std::string encode(VynCharSet to, std::u16string_view source, OnError onError = OnError::replace,
                               Report* report = nullptr);

/// A whole text from one set to another, in pieces that stay in the first-level cache. A loss becomes U+FFFD in a
/// Unicode set and "?" in others, or what `onError` says, and is counted once, whether on the way in or out; `report`,
/// which may be null, counts them and locates the first in bytes of `source`. Throws `std::invalid_argument` for a set
/// that is not served, `std::bad_alloc` where memory runs out.
VYNULIB_API std::string transcode(VynCharSet from, VynCharSet to, std::string_view source,
                                  OnError onError = OnError::replace, Report* report = nullptr);

/// Whether `source` decodes in the set `cs` without a loss. Throws `std::invalid_argument` for a set that is not
/// served.
VYNULIB_API bool isValid(VynCharSet cs, std::string_view source);

/// Units that are enough for what any source of `bytes` bytes in the set decodes to, replacements included, a
/// terminator not. The largest `std::size_t` where they are more than that. Throws `std::invalid_argument` for a set
/// that is not served.
VYNULIB_API std::size_t maxUnits(VynCharSet from, std::size_t bytes);

/// Bytes that are enough for what any source of `units` units encodes to in the set, escapes included, a terminator
/// not. The largest `std::size_t` where they are more than that. Throws `std::invalid_argument` for a set that is not
/// served.
VYNULIB_API std::size_t maxBytes(VynCharSet to, std::size_t units);

/// The set that people mean by a name or a number: its `VYNCS_` name with or without the prefix, an IANA name, a usual
/// alias or its code-page number, in any case, with '-', '_' and blanks ignored. Nothing for a name that is not known,
/// or one of a set that is not served. Throws nothing.
VYNULIB_API std::optional<VynCharSet> charSetNamed(std::string_view name);

/// The IANA name of the set, or its own without prefix where IANA has none; valid while the library is loaded, and
/// zero-terminated. Throws `std::invalid_argument` for a set that is not served.
VYNULIB_API std::string_view preferredName(VynCharSet cs);

} // namespace vynulib
