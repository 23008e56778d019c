#pragma once

#include <vynulib/VynCharSetConverter.h>

/// UTF-16 as ASCII text: each unit of 0x80 or more is "U+" and four upper-case hexadecimal digits.
///
/// "U" itself is never escaped, so text that looks like an escape decodes to its unit; an incomplete escape is ordinary
/// text. A byte of 0x80 or more decodes to the unit 0xFF00 above it: such bytes do not belong into this form. The
/// policy is ignored and the flag never raised.
class VYNULIB_API VynCharSetConverterUTF16Esc : public VynCharSetConverter {
public:
    explicit constexpr VynCharSetConverterUTF16Esc(VynCharSet cs) noexcept : VynCharSetConverter(cs) {}
    ~VynCharSetConverterUTF16Esc() override;

    unsigned long getNumUnits(void const* src, unsigned long len) override;
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;
    unsigned int getMinUnitSize() const override { return 1; }
    unsigned int getMaxUnitSize() const override { return 6; }
    unsigned int getNullCharSize() const override { return 1; }
};
