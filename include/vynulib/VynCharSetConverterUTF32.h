#pragma once

#include <vynulib/VynCharSetConverter.h>

/// UTF-32 in the machine's byte order, the only set that also converts from and to UTF-8 directly. No byte-order mark.
///
/// `toUTF16` reads at most `maxSrc` values, none where it is 0; it rejects nothing and never raises the flag.
/// `fromUTF16` writes an escape as six values. `getNumUnits` takes `len` in bytes and counts values, although a value
/// above U+FFFF becomes two units.
class VYNULIB_API VynCharSetConverterUTF32 : public VynCharSetConverter {
public:
    /// A converter that calls itself `cs` and does the same for any.
    explicit constexpr VynCharSetConverterUTF32(VynCharSet cs) noexcept : VynCharSetConverter(cs) {}
    ~VynCharSetConverterUTF32() override;

    /// Values in the first `len` bytes of `src`, or those before its zero value if that comes first (`len` -1: all of
    /// them); one above U+FFFF counts once, though it becomes two units. Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Decodes `src` up to its zero value, or `maxSrc` values of it where that is not negative. Writes at most
    /// `dstUnits` units, then a zero unit, which is not counted. Returns the units; 0 for null. Neither surrogate is
    /// written without the other. Any value is taken; `op` counts for nothing, and `*illegal` becomes false.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// Four for each character in the first `len` units of `src`, or before its zero unit if that comes first (`len`
    /// -1: all of them), none for a high surrogate at the end. Null gives 0.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

    /// Encodes `src` up to its zero unit. Writes at most `dstCap` bytes, in whole values, then a zero value, which is
    /// not counted: `dst` holds `dstCap + 4` bytes. Returns the bytes; 0 for null. A high surrogate alone raises
    /// `*illegal` and becomes "?" or, with `ILLCHAR_ESCAPE`, six values; with `ILLCHAR_STOP` the text ends before it. A
    /// low one alone is a value and no loss.
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;

    /// Decodes UTF-8, sequences of up to six bytes included, up to its terminator. Writes at most `len` values and a
    /// zero value: `dst` holds `len + 1` values. Malformed and overlong sequences, surrogates, U+FFFE and U+FFFF become
    /// U+FFFD; the flag is cleared, also for null pointers, and never raised. Returns the values written, not their
    /// bytes; 0 for null pointers.
    unsigned long fromUTF8(void* dst, unsigned char const* src, unsigned long len, ILLCHAR_OPTYPE op,
                           bool* illegal) override;

    /// Encodes as UTF-8, values up to 0x7FFFFFFF in up to six bytes. Surrogates and greater values become U+FFFD and
    /// raise the flag, which is cleared first, also for null pointers. Room is tested only after each character: up to
    /// five bytes more than `len` are written, and no terminator if more than `len` are. `dst` holds `len + 5` bytes.
    /// Returns the bytes written.
    unsigned long toUTF8(unsigned char* dst, void const* src, unsigned long len, ILLCHAR_OPTYPE op,
                         bool* illegal) override;
    unsigned int getMinUnitSize() const override { return 4; }
    unsigned int getMaxUnitSize() const override { return 4; }
    unsigned int getNullCharSize() const override { return 4; }

    /// Decodes one sequence of the terminated UTF-8 text at `*p` and moves `*p` past it; see `fromUTF8`. Of a
    /// sequence without all its continuation bytes only the lead byte is skipped.
    unsigned int UTF32fromUTF8(unsigned char** p);
};
