#pragma once

#include <vynulib/VynCharSetConverterMBCS.h>
#include <vynulib/sGB18030Range.h>

namespace vyn {
struct CodecAccess;
struct Gb18030Codec;
} // namespace vyn

/// GB18030: one byte, two bytes by table, or four bytes by ranges (the rest of the Basic Multilingual Plane) and by
/// arithmetic (beyond it).
///
/// A code of one or two bytes is its own key; four bytes have the key of their linear position, from 0x10000 on.
/// `maxSrc` is not tested after a replaced multibyte sequence. Encoding ends, flag untouched, at a high surrogate
/// without its low one. `getNumUnits` counts what the bytes decode to.
class VYNULIB_API VynCharSetConverterGB18030 : public VynCharSetConverterMBCS {
public:
    /// See the base for `table`, which holds the codes of one and two bytes.
    constexpr VynCharSetConverterGB18030(unsigned short const* table, VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(table, cs) {}

    /// A converter that knows its map by name only and so has none.
    constexpr VynCharSetConverterGB18030(char const* name, VynCharSet cs) noexcept
        : VynCharSetConverterMBCS(name, cs) {}
    ~VynCharSetConverterGB18030() override;

    /// Units that the first `len` bytes of `src` become, or those before its zero byte if that comes first (`len` -1:
    /// all of them): one or two for each character of one, two or four bytes, one for each loss. Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Decodes `src` up to its zero byte, or until `maxSrc` bytes are read where that is above 0. Writes at most
    /// `dstUnits` units, then a zero unit, which is not counted. Returns the units; 0 for null. Neither surrogate is
    /// written without the other. What can't be decoded raises `*illegal` and becomes U+FFFD; with `ILLCHAR_STOP` the
    /// text ends before it.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// Bytes that the first `len` units of `src` become, or those before its zero unit if that comes first (`len` -1:
    /// all of them): one, two or four for each character, up to a high surrogate without its low one. Null gives 0.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

    /// Encodes `src` up to its zero unit. Writes at most `dstCap` bytes, then a zero byte, which is not counted.
    /// Returns the bytes; 0 for null. Ends, flag untouched, at a high surrogate without its low one. What the set lacks
    /// raises `*illegal` and becomes "?" or, with `ILLCHAR_ESCAPE`, "U+XXXX"; with `ILLCHAR_STOP` the text ends before
    /// it.
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;

    unsigned int getMinUnitSize() const override { return 1; }
    unsigned int getMaxUnitSize() const override { return 4; }
    unsigned int getNullCharSize() const override { return 1; }
    void load() override;

    /// Where the search for `key` among the ranges that map keys to UTF-16 begins: the record that holds it is this one
    /// or one after it, if any does. The record stays the library's.
    sGB18030Range const* getGB2UniRange(unsigned int key);

    /// The same for the UTF-16 unit `unit` among the ranges that map units to keys.
    sGB18030Range const* getUni2GBRange(unsigned int unit);

private:
    friend struct vyn::CodecAccess;

    vyn::Gb18030Codec codec(); // the tables, loaded
};
