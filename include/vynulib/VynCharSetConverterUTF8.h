#pragma once

#include <vynulib/VynCharSetConverter.h>

/// UTF-8, leniently: no check for overlong forms, encoded surrogates or values above U+10FFFF, no byte-order mark.
///
/// Decoding ignores the policy: a stray continuation byte is skipped, a malformed sequence becomes U+FFFD, and either
/// raises the flag. So does every well-formed four-byte sequence, although it is converted, unless the room ends with
/// its pair: the flag alone does not prove a loss. A four-byte sequence with one unit of room left becomes U+FFFD.
/// `getNumUnits` ends at a stray continuation byte or a cut-off sequence.
///
/// Encoding takes a lone low surrogate as an ordinary unit of three bytes. For a lone high one, `ILLCHAR_REPLACE`
/// writes "?"; `ILLCHAR_ESCAPE` writes "U+XXXX", charges five of its six bytes to the room and drops the unit after it
/// unconverted, the terminator included: give such a call a byte of spare room per escape, and a second zero unit.
class VYNULIB_API VynCharSetConverterUTF8 : public VynCharSetConverter {
public:
    /// A converter that calls itself `cs` and does the same for any.
    explicit constexpr VynCharSetConverterUTF8(VynCharSet cs) noexcept : VynCharSetConverter(cs) {}
    ~VynCharSetConverterUTF8() override;

    /// Units that the first `len` bytes of `src` become, or those before its zero byte if that comes first (`len` -1:
    /// all of them): two for each four-byte sequence, one for each other, by their lead bytes alone; it ends at a stray
    /// continuation byte or at a sequence that is cut off. Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Decodes `src` up to its zero byte, or until `maxSrc` bytes are read where that is above 0. Writes at most
    /// `dstUnits` units, then a zero unit, which is not counted. Returns the units; 0 for null. `op` counts for
    /// nothing, and `*illegal` alone proves no loss: see the class.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// Bytes that the first `len` units of `src` become, or those before its zero unit if that comes first (`len` -1:
    /// all of them): four for each surrogate pair, one for a high surrogate alone, none for one at the end, one to
    /// three for each other unit. Null gives 0.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

    /// Encodes `src` up to its zero unit. Writes at most `dstCap` bytes (one more for each "U+XXXX": see the class),
    /// then a zero byte, which is not counted. Returns the bytes; 0 for null. A high surrogate alone raises `*illegal`
    /// and becomes "?" or, with `ILLCHAR_ESCAPE`, "U+XXXX"; with `ILLCHAR_STOP` the text ends before it. A low one
    /// alone is three bytes and no loss.
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;

    unsigned int getMinUnitSize() const override { return 1; }
    unsigned int getMaxUnitSize() const override { return 3; }
    unsigned int getNullCharSize() const override { return 1; }
};
