#pragma once

#include <vynulib/VynCharSetConverter.h>

/// UTF-8, leniently: no check for overlong forms, encoded surrogates or values above U+10FFFF, no byte-order mark.
///
/// Decoding ignores the policy: a stray continuation byte is skipped, a malformed sequence becomes U+FFFD, and either
/// raises the flag. So does every well-formed four-byte sequence, although it is converted, unless the room ends with
/// its pair: the flag alone does not prove a loss. A four-byte sequence with one unit of room left becomes U+FFFD.
/// `getNumUnits` ends at a stray continuation byte or a cut-off sequence.
///
/// Encoding takes a lone low surrogate as an ordinary unit of three bytes. For a lone high one, `ILLCHAR_REPLACE` writes
/// "?"; `ILLCHAR_ESCAPE` writes "U+XXXX", charges five of its six bytes to the room and drops the unit after it
/// unconverted, the terminator included: give such a call a byte of spare room per escape, and a second zero unit.
class VYNULIB_API VynCharSetConverterUTF8 : public VynCharSetConverter {
public:
    explicit constexpr VynCharSetConverterUTF8(VynCharSet cs) noexcept : VynCharSetConverter(cs) {}
    ~VynCharSetConverterUTF8() override;

    unsigned long getNumUnits(void const* src, unsigned long len) override;
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;
    unsigned int getMinUnitSize() const override { return 1; }
    unsigned int getMaxUnitSize() const override { return 3; }
    unsigned int getNullCharSize() const override { return 1; }
};
