#pragma once

#include <vynulib/VynCharSetConverter.h>

/// UTF-32 in the machine's byte order, the only set that also converts from and to UTF-8 directly. No byte-order mark.
///
/// `toUTF16` reads at most `maxSrc` values, none where it is 0; it rejects nothing and never raises the flag.
/// `fromUTF16` writes an escape as six values. `getNumUnits` takes `len` in bytes and counts values, although a value
/// above U+FFFF becomes two units.
class VYNULIB_API VynCharSetConverterUTF32 : public VynCharSetConverter {
public:
    explicit constexpr VynCharSetConverterUTF32(VynCharSet cs) noexcept : VynCharSetConverter(cs) {}
    ~VynCharSetConverterUTF32() override;

    unsigned long getNumUnits(void const* src, unsigned long len) override;
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;

    /// Decodes UTF-8, sequences of up to six bytes included, up to its terminator. Writes at most `len` values and a
    /// zero value: `dst` holds `len + 1` values. Malformed and overlong sequences, surrogates, U+FFFE and U+FFFF become
    /// U+FFFD; the flag is cleared, also for null pointers, and never raised. Returns the values written, not their bytes;
    /// 0 for null pointers.
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
