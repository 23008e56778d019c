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

    /// Units that the first `len` bytes of `src` become, or those before its zero byte if that comes first (`len` -1:
    /// all of them): one for each pair of lead and trail byte, one for each other byte. Null gives 0.
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

    vyn::DoubleByteCodec codec(); // the tables, loaded
};
