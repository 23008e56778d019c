#pragma once

#include <vynulib/VynExport.h>

/// What makes a set double-byte: which bytes begin a two-byte character and which may be its second.
class VYNULIB_API VynCharSetConverterDBCSBase {
public:
    /// `types`: a type for each of the 256 bytes, in which bit 0x40 marks a lead byte and bit 0x80 a trail byte. It
    /// must outlive the converter.
    explicit constexpr VynCharSetConverterDBCSBase(unsigned char const* types) noexcept : m_pTypes(types) {}

protected:
    unsigned char const* m_pTypes; ///< The 256 types. Not owned.
};
