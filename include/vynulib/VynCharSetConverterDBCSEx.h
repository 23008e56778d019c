#pragma once

#include <vynulib/VynCharSetConverterDBCSBase.h>
#include <vynulib/VynCharSetConverterMBCSEx.h>

namespace vyn {
struct CodecAccess;
struct DoubleByteExCodec;
} // namespace vyn

/// As `VynCharSetConverterDBCS`, for a set with characters beyond the Basic Multilingual Plane, which are surrogate
/// pairs in UTF-16. A pair that can't be converted is one character: "?" or two escapes.
class VYNULIB_API VynCharSetConverterDBCSEx : public VynCharSetConverterMBCSEx, protected VynCharSetConverterDBCSBase {
public:
    /// See the bases for `table` and `types`.
    constexpr VynCharSetConverterDBCSEx(sMBCSExTable const* table, unsigned char const* types, VynCharSet cs) noexcept
        : VynCharSetConverterMBCSEx(table, cs), VynCharSetConverterDBCSBase(types) {}
    ~VynCharSetConverterDBCSEx() override;

    /// Units that the first `len` bytes of `src` become, or those before its zero byte if that comes first (`len` -1:
    /// all of them): two for a character beyond U+FFFF, one for each other character or byte. Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Decodes `src` up to its zero byte, or until `maxSrc` bytes are read where that is above 0. Writes at most
    /// `dstUnits` units, then a zero unit, which is not counted. Returns the units; 0 for null. Neither surrogate is
    /// written without the other. What can't be decoded raises `*illegal` and becomes U+FFFD; with `ILLCHAR_STOP` the
    /// text ends before it.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// Bytes that the first `len` units of `src` become, or those before its zero unit if that comes first (`len` -1:
    /// all of them): one or two for each character, one for each that the set lacks, none for a high surrogate at the
    /// end. Null gives 0.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

    /// Encodes `src` up to its zero unit. Writes at most `dstCap` bytes, then a zero byte, which is not counted.
    /// Returns the bytes; 0 for null. What the set lacks raises `*illegal` and becomes "?" or, with `ILLCHAR_ESCAPE`,
    /// "U+XXXX"; with `ILLCHAR_STOP` the text ends before it.
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;

    unsigned int getMinUnitSize() const override { return 1; }
    unsigned int getMaxUnitSize() const override { return 2; }
    unsigned int getNullCharSize() const override { return 1; }

    void load() override;

private:
    friend struct vyn::CodecAccess;

    vyn::DoubleByteExCodec codec(); // the tables, loaded
};
