#pragma once

#include <vynulib/VynCharSetConverter.h>

/// UTF-16 in the machine's byte order: conversion is a bounded copy. No byte-order mark, no check of surrogates; the
/// policy is ignored and the flag never raised.
///
/// `toUTF16` copies at most `maxSrc` units, and nothing at all where that is 0 or less, -1 included. `getNumUnits`
/// takes `len` in bytes. `fromUTF16` truncates `dstCap` to whole units.
class VYNULIB_API VynCharSetConverterUTF16 : public VynCharSetConverter {
public:
    explicit constexpr VynCharSetConverterUTF16(VynCharSet cs) noexcept : VynCharSetConverter(cs) {}
    ~VynCharSetConverterUTF16() override;

    unsigned long getNumUnits(void const* src, unsigned long len) override;
    unsigned long toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits, ILLCHAR_OPTYPE op,
                          bool* illegal, int maxSrc) override;
    unsigned long getNumBytes(unsigned short const* src, unsigned long len) override;
    unsigned long fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op,
                            bool* illegal) override;
    unsigned int getMinUnitSize() const override { return 2; }
    unsigned int getMaxUnitSize() const override { return 2; }
    unsigned int getNullCharSize() const override { return 2; }
};
