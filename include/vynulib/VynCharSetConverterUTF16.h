#pragma once

#include <vynulib/VynCharSetConverter.h>

/// UTF-16 in the machine's byte order: conversion is a bounded copy. No byte-order mark, no check of surrogates; the
/// policy is ignored and the flag never raised.
///
/// `toUTF16` copies at most `maxSrc` units, and nothing at all where that is 0 or less, -1 included. `getNumUnits`
/// takes `len` in bytes. `fromUTF16` truncates `dstCap` to whole units.
class VYNULIB_API VynCharSetConverterUTF16 : public VynCharSetConverter {
public:
    /// A converter that calls itself `cs` and does the same for any.
    explicit constexpr VynCharSetConverterUTF16(VynCharSet cs) noexcept : VynCharSetConverter(cs) {}
    ~VynCharSetConverterUTF16() override;

    /// Units in the first `len` bytes of `src`, or those before its zero unit if that comes first (`len` -1: all of
    /// them). Null gives 0.
    unsigned long getNumUnits(void const* src, unsigned long len) override;

    /// Copies `src` up to its zero unit, at most `maxSrc` units, hence **none where that is 0 or -1**. Writes at most
    /// `dstUnits` units, then a zero unit, which is not counted. Returns the units; 0 for null. `op` counts for
    /// nothing; `*illegal` becomes false.
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;

    /// Twice the first `len` units of `src`, or those before its zero unit if that comes first (`len` -1: all of them).
    /// Null gives 0.
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;

    /// Copies `src` up to its zero unit. Writes at most `dstCap` bytes, in whole units, then a zero unit, which is not
    /// counted: `dst` holds `dstCap + 2` bytes. Returns the bytes; 0 for null. `op` counts for nothing; `*illegal`
    /// becomes false.
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;

    unsigned int getMinUnitSize() const override { return 2; }
    unsigned int getMaxUnitSize() const override { return 2; }
    unsigned int getNullCharSize() const override { return 2; }
};
