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

    unsigned long getNumUnits(void const* src, unsigned long len) override;
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// One byte for each unit, mapped or not.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

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
