#pragma once

#include <vynulib/VynCharSetConverterMBCS.h>

namespace vyn {
struct CodecAccess;
struct EucJpCodec;
} // namespace vyn

/// EUC-JP: ASCII but for DEL, JIS X 0208 in two bytes, half-width katakana of JIS X 0201 after `m_cSS2`, JIS X 0212 in
/// two bytes after `m_cSS3`.
///
/// A second byte counts by its low seven bits. Characters of JIS X 0201 below 0x80 that ASCII lacks take the lead byte
/// 0x80. `getNumUnits` does not count a sequence that `len` or the terminator cuts off.
class VYNULIB_API VynCharSetConverterEUC_JP : public VynCharSetConverterMBCS {
public:
    static constexpr unsigned char m_cSS2 = 0x8E;
    static constexpr unsigned char m_cSS3 = 0x8F;

    /// See the base for the form of the maps. Where JIS X 0208 and JIS X 0201 both hold a character, the latter counts.
    constexpr VynCharSetConverterEUC_JP(unsigned short const* jis0208, unsigned short const* jis0201,
                                        unsigned short const* jis0212, VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(jis0208, cs), m_pJIS0201Map(jis0201), m_pJIS0212Map(jis0212) {}

    /// A converter that knows its maps by name only and so has none.
    constexpr VynCharSetConverterEUC_JP(char const* jis0208, char const* jis0201, char const* jis0212,
                                        VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(jis0208, cs), m_pJIS0201Name(jis0201), m_pJIS0212Name(jis0212) {}
    ~VynCharSetConverterEUC_JP() override;

    unsigned long getNumUnits(void const* src, unsigned long len) override;
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;
    unsigned int getMinUnitSize() const override { return 1; }
    unsigned int getMaxUnitSize() const override { return 3; }
    unsigned int getNullCharSize() const override { return 1; }
    void load() override;

private:
    friend struct vyn::CodecAccess;

    vyn::EucJpCodec codec(); // the tables, loaded

    [[maybe_unused]] char const* m_pJIS0201Name = nullptr;
    [[maybe_unused]] char const* m_pJIS0212Name = nullptr;
    unsigned short const* m_pJIS0201Map = nullptr;
    unsigned short const* m_pJIS0212Map = nullptr;
};
