#pragma once

#include <vynulib/VynCharSetConverter.h>

/// UTF-16 as ASCII text: each unit of 0x80 or more is "U+" and four upper-case hexadecimal digits.
///
/// "U" itself is never escaped, so text that looks like an escape decodes to its unit; an incomplete escape is ordinary
/// text. A byte of 0x80 or more decodes to the unit 0xFF00 above it: such bytes do not belong into this form. The
/// policy is ignored and the flag never raised.
class VYNULIB_API VynCharSetConverterUTF16Esc : public VynCharSetConverter {
public:
    /// A converter that calls itself `cs` and does the same for any.
    explicit constexpr VynCharSetConverterUTF16Esc(VynCharSet cs) noexcept : VynCharSetConverter(cs) {}
    ~VynCharSetConverterUTF16Esc() override;

    /// Units that the first `len` bytes of `src` become, or those before its zero byte if that comes first (`len` -1:
    /// all of them): one for each whole escape and each other byte. Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Decodes `src` up to its zero byte, or until `maxSrc` bytes are read where that is above 0. Writes at most
    /// `dstUnits` units, then a zero unit, which is not counted. Returns the units; 0 for null. `op` counts for
    /// nothing; `*illegal` becomes false.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// Bytes that the first `len` units of `src` become, or those before its zero unit if that comes first (`len` -1:
    /// all of them): one for each unit below 0x80, six for each other. Null gives 0.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

    /// Encodes `src` up to its zero unit. Writes at most `dstCap` bytes, then a zero byte, which is not counted.
    /// Returns the bytes; 0 for null. Nothing is lost; `op` counts for nothing, and `*illegal` becomes false.
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;

    unsigned int getMinUnitSize() const override { return 1; }
    unsigned int getMaxUnitSize() const override { return 6; }
    unsigned int getNullCharSize() const override { return 1; }
};
