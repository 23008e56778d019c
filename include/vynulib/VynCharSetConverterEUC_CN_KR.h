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

    unsigned long getNumUnits(void const* src, unsigned long len) override;
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;
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
