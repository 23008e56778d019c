#pragma once

/// @file
/// What all converters have in common.

#include <vynulib/VynCharSet.h>

/// What a conversion does with a character that it can't convert: an unmapped code, an invalid byte sequence, a lone
/// surrogate. Any other value acts as `ILLCHAR_REPLACE`.
enum ILLCHAR_OPTYPE : int {
    ILLCHAR_STOP = 0,    ///< End before it.
    ILLCHAR_REPLACE = 1, ///< Write U+FFFD (to UTF-16) or "?" (from UTF-16) for it and go on.
    /// To UTF-16: as `ILLCHAR_REPLACE`. From UTF-16: write "U+XXXX" for each of its units and go on.
    ILLCHAR_ESCAPE = 2,
};

/// Converts text between one character set and UTF-16 in the machine's byte order, the pivot of every conversion.
///
/// One object exists per set, for the life of the library; `getConverter` hands it out, and callers never delete it.
/// Any number of threads may use one object at once.
///
/// Contract of every set, but for what the class of a converter says of itself:
/// - Null `src` or `dst`: the result is 0, and nothing is touched.
/// - `illegal` may be null. Otherwise it is cleared on entry and becomes true as soon as one character could not be
///   converted, whatever `op` is.
/// - Sources are read up to their terminator: a zero byte, a zero 16-bit unit (UTF-16), a zero 32-bit value (UTF-32).
///   Byte sources and destinations need no alignment.
/// - A terminator is always written after the output and is neither counted in a capacity nor in a result.
/// - A character is never split: where it does not fit whole, the conversion ends before it.
/// - Allocation failure while a set's tables are built at its first use is thrown as `std::bad_alloc`.
class VYNULIB_API VynCharSetConverter {
public:
    /// A converter of the set `cs`. It serves the set only where it is registered (`CharSetConverterManager::insert`).
    explicit constexpr VynCharSetConverter(VynCharSet cs) noexcept : m_eCharSet(cs) {}
    VynCharSetConverter(VynCharSetConverter const&) = delete;
    VynCharSetConverter& operator=(VynCharSetConverter const&) = delete;
    virtual ~VynCharSetConverter();

    /// The units that the first `len` bytes of `src` become, or those up to its terminator if that comes first, counted
    /// by the form of the bytes: the converters' classes say where malformed ones or UTF-32 make it another number than
    /// `toUTF16` writes. `(unsigned long)-1` means up to the terminator; 0 and a null `src` give 0.
    virtual unsigned long getNumUnits(void const* src, unsigned long len) = 0;

    /// Converts text of the set, up to its terminator, to UTF-16. Writes at most `dstUnits` units, no surrogate pair in
    /// part, and then a zero unit, which is not counted: `dst` holds `dstUnits + 1` units. What can't be converted sets
    /// `*illegal`, which may be null, and becomes U+FFFD; with `ILLCHAR_STOP` the text ends before it.
    /// `maxSrc` limits the source as well; -1 means no limit (but see `VynCharSetConverterUTF16`). Byte-oriented sets:
    /// the conversion ends after the character that brings the bytes read to `maxSrc`, 0 and less mean no limit.
    /// Single-byte sets and UTF-32: at most `maxSrc` bytes or values are read, 0 reads none, less means no limit.
    /// Returns the units written; 0 for null `dst` or `src`, which touches nothing.
    virtual unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                                  bool* illegal, int maxSrc) = 0;

    /// The bytes that the first `len` units of `src` need in the set, or those up to its zero unit if that comes first,
    /// when each character that can't be converted takes a "?"; terminators are not counted. With `ILLCHAR_ESCAPE` it
    /// may take 6 bytes for each unit instead. `(unsigned long)-1` means up to the zero unit; 0 and a null `src` give
    /// 0.
    virtual unsigned long getNumBytes(unsigned short const* src, unsigned long len) = 0;

    /// Converts UTF-16, up to its zero unit, to the set. Writes at most `dstCap` bytes, no character in part, and then
    /// the set's terminator, which is not counted: `dst` holds `dstCap + getNullCharSize()` bytes. What can't be
    /// converted sets `*illegal`, which may be null, and becomes "?" or with `ILLCHAR_ESCAPE` "U+XXXX"; with
    /// `ILLCHAR_STOP` the text ends before it. Returns the bytes written; 0 for null `dst` or `src`, which touches
    /// nothing.
    virtual unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                                    bool* illegal) = 0;

    /// Converts straight from UTF-8, at most `len` characters. Only `VynCharSetConverterUTF32` does; all others return
    /// 0 and touch nothing.
    virtual unsigned long fromUTF8(void* dst, unsigned char const* src, unsigned long len, ILLCHAR_OPTYPE op,
                                   bool* illegal);

    /// Converts straight to UTF-8, about `len` bytes. Only `VynCharSetConverterUTF32` does; all others return 0 and
    /// touch nothing.
    virtual unsigned long toUTF8(unsigned char* dst, void const* src, unsigned long len, ILLCHAR_OPTYPE op,
                                 bool* illegal);

    /// Bytes of the shortest character of the set.
    virtual unsigned int getMinUnitSize() const = 0;

    /// Bytes that one UTF-16 unit becomes at most. For UTF-8 that is 3: its four-byte sequences stand for two units.
    virtual unsigned int getMaxUnitSize() const = 0;

    /// Bytes of the set's terminator.
    virtual unsigned int getNullCharSize() const = 0;

    /// The converter that serves `cs`, never null: that of the default set for `VYNCS_OS_DEFAULT`, the UTF-8 converter
    /// for a set that has none of its own. It stays the library's. Any number of threads may ask at once.
    static VynCharSetConverter* getConverter(VynCharSet cs);

private:
    [[maybe_unused]] VynCharSet m_eCharSet;
};
