#pragma once

#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynLazy.h>

namespace vyn {
struct CodecAccess;
struct SingleByteCodec;
struct SingleByteTables;
} // namespace vyn

/// A single-byte set, converted by a table that is built at the first conversion.
///
/// `maxSrc` is the number of bytes to read: 0 reads none. Surrogates are looked up one by one, so that a supplementary
/// character becomes two replacements. An instance without a map converts nothing.
class VYNULIB_API VynCharSetConverterSBCS : public VynCharSetConverter {
public:
    /// `map`: pairs of a byte and its UTF-16 unit, ended by the pair (0, 0). It must outlive the converter. Of two
    /// pairs with the same byte or unit the later counts in that direction.
    constexpr VynCharSetConverterSBCS(unsigned short const* map, VynCharSet cs) noexcept
        : VynCharSetConverter(cs), m_pMap(map) {}

    /// A converter that knows its map by name only and so has none.
    constexpr VynCharSetConverterSBCS(char const* name, VynCharSet cs) noexcept
        : VynCharSetConverter(cs), m_pMapName(name) {}

    ~VynCharSetConverterSBCS() override;

    /// Builds the tables, if they are not there yet. Conversions call it themselves.
    void load();

    /// Units that the first `len` bytes of `src` become, or those before its zero byte if that comes first (`len` -1:
    /// all of them): one for each byte. Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Decodes `src` up to its zero byte, or `maxSrc` bytes of it where that is not negative. Writes at most `dstUnits`
    /// units, then a zero unit, which is not counted. Returns the units; 0 for null. What can't be decoded raises
    /// `*illegal` and becomes U+FFFD; with `ILLCHAR_STOP` the text ends before it.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// One byte for each unit, mapped or not.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

    /// Encodes `src` up to its zero unit. Writes at most `dstCap` bytes, then a zero byte, which is not counted.
    /// Returns the bytes; 0 for null. What the set lacks raises `*illegal` and becomes "?" or, with `ILLCHAR_ESCAPE`,
    /// "U+XXXX"; with `ILLCHAR_STOP` the text ends before it.
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;

    unsigned int getMinUnitSize() const override { return 1; }
    unsigned int getMaxUnitSize() const override { return 1; }
    unsigned int getNullCharSize() const override { return 1; }

private:
    friend struct vyn::CodecAccess;

    vyn::SingleByteCodec codec(); // the tables, loaded

    [[maybe_unused]] char const* m_pMapName = nullptr;
    unsigned short const* m_pMap = nullptr;
    vyn::Lazy<vyn::SingleByteTables> m_tables;
};
