#pragma once

#include <vynulib/VynCharSetConverterMBCS.h>

namespace vyn {
struct CodecAccess;
struct EucCnKrCodec;
} // namespace vyn

/// EUC-CN or EUC-KR: ASCII but for DEL, and one set of 94 rows by 94 cells in bytes 0xA1 to 0xFE.
///
/// DEL can't be converted in either direction. `getNumUnits` counts by the form of the bytes and needs no table.
class VYNULIB_API VynCharSetConverterEUC_CN_KR : public VynCharSetConverterMBCS {
public:
    /// See the base; codes are row and cell with the high bits clear, 0x2121 to 0x7E7E.
    constexpr VynCharSetConverterEUC_CN_KR(unsigned short const* table, VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(table, cs) {}

    /// A converter that knows its map by name only and so has none.
    constexpr VynCharSetConverterEUC_CN_KR(char const* name, VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(name, cs) {}
    ~VynCharSetConverterEUC_CN_KR() override;

    /// Units that the first `len` bytes of `src` become, or those before its zero byte if that comes first (`len` -1:
    /// all of them): one for each pair of bytes 0xA1 to 0xFE, one for each other byte. Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Decodes `src` up to its zero byte, or until `maxSrc` bytes are read where that is above 0. Writes at most
    /// `dstUnits` units, then a zero unit, which is not counted. Returns the units; 0 for null. What can't be decoded
    /// raises `*illegal` and becomes U+FFFD; with `ILLCHAR_STOP` the text ends before it.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// Bytes that the first `len` units of `src` become, or those before its zero unit if that comes first (`len` -1:
    /// all of them): one or two for each unit, one for each that the set lacks. Null gives 0.
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

    vyn::EucCnKrCodec codec(); // the tables, loaded
};
