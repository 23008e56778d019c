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

    vyn::DoubleByteExCodec codec(); // the tables, loaded
};
