#pragma once

#include <vynulib/VynCharSetConverterDBCSBase.h>
#include <vynulib/VynCharSetConverterMBCS.h>

namespace vyn {
struct CodecAccess;
struct DoubleByteCodec;
} // namespace vyn

/// A double-byte code page: a character is one byte, or a lead byte and a trail byte.
///
/// A lead byte without a trail byte after it is invalid by itself: the byte after it begins the next character.
/// `maxSrc` is not tested after such a byte. `getNumUnits` counts by the form of the bytes and needs no table.
class VYNULIB_API VynCharSetConverterDBCS : public VynCharSetConverterMBCS, protected VynCharSetConverterDBCSBase {
public:
    /// See the bases for `table` and `types`.
    constexpr VynCharSetConverterDBCS(unsigned short const* table, unsigned char const* types, VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(table, cs), VynCharSetConverterDBCSBase(types) {}
    ~VynCharSetConverterDBCS() override;

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

    vyn::DoubleByteCodec codec(); // the tables, loaded
};
