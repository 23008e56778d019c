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
    static constexpr unsigned char m_cSS2 = 0x8E; ///< Single shift 2: one byte of JIS X 0201 follows.
    static constexpr unsigned char m_cSS3 = 0x8F; ///< Single shift 3: two bytes of JIS X 0212 follow.

    /// See the base for the form of the maps. Where JIS X 0208 and JIS X 0201 both hold a character, the latter counts.
    constexpr VynCharSetConverterEUC_JP(unsigned short const* jis0208, unsigned short const* jis0201,
                                        unsigned short const* jis0212, VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(jis0208, cs), m_pJIS0201Map(jis0201), m_pJIS0212Map(jis0212) {}

    /// A converter that knows its maps by name only and so has none.
    constexpr VynCharSetConverterEUC_JP(char const* jis0208, char const* jis0201, char const* jis0212,
                                        VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(jis0208, cs), m_pJIS0201Name(jis0201), m_pJIS0212Name(jis0212) {}
    ~VynCharSetConverterEUC_JP() override;

    /// Units that the first `len` bytes of `src` become, or those before its zero byte if that comes first (`len` -1:
    /// all of them): one for each character of one to three bytes, one for each byte that begins none. Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Decodes `src` up to its zero byte, or until `maxSrc` bytes are read where that is above 0. Writes at most
    /// `dstUnits` units, then a zero unit, which is not counted. Returns the units; 0 for null. What can't be decoded
    /// raises `*illegal` and becomes U+FFFD; with `ILLCHAR_STOP` the text ends before it.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// Bytes that the first `len` units of `src` become, or those before its zero unit if that comes first (`len` -1:
    /// all of them): one to three for each unit, one for each that the set lacks. Null gives 0.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

    /// Encodes `src` up to its zero unit. Writes at most `dstCap` bytes, then a zero byte, which is not counted.
    /// Returns the bytes; 0 for null. What the set lacks raises `*illegal` and becomes "?" or, with `ILLCHAR_ESCAPE`,
    /// "U+XXXX"; with `ILLCHAR_STOP` the text ends before it.
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
