#pragma once

#include <vynulib/LookupTable.h>
#include <vynulib/LookupTableEx.h>
#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynLazy.h>
#include <vynulib/sMBCSExTable.h>

namespace vyn {
struct MultibyteExTables;
}

/// As `VynCharSetConverterMBCS`, for sets with characters beyond the Basic Multilingual Plane.
class VYNULIB_API VynCharSetConverterMBCSEx : public VynCharSetConverter {
public:
    /// `table`: records ended by {0, 0}. It must outlive the converter. Of two records with the same code or character
    /// the later counts in that direction. A value above U+10FFFF is known to the decoder only.
    constexpr VynCharSetConverterMBCSEx(sMBCSExTable const* table, VynCharSet cs) noexcept
        : VynCharSetConverter(cs), m_pTable(table) {}

    /// A converter that knows its map by name only and so has none.
    constexpr VynCharSetConverterMBCSEx(char const* name, VynCharSet cs) noexcept
        : VynCharSetConverter(cs), m_pName(name) {}

    ~VynCharSetConverterMBCSEx() override;

    /// Builds the tables, if they are not there yet. Conversions call it themselves.
    virtual void load();

protected:
    using ForwardTable = LookupTable<unsigned int>;     ///< Scalar values under codes.
    using ReverseTable = LookupTableEx<unsigned short>; ///< Codes under scalar values.

    /// Scalar value of each code. Null until `load`, and for good without a map.
    ForwardTable const* forwardTable() const noexcept;

    /// Code of each scalar value. There when the forward table is.
    ReverseTable const* reverseTable() const noexcept;

    /// What `table` was given as, null if nothing.
    sMBCSExTable const* map() const noexcept { return m_pTable; }

    /// Both tables, published as a whole.
    vyn::Lazy<vyn::MultibyteExTables> m_tables;

private:
    [[maybe_unused]] char const* m_pName = nullptr;
    sMBCSExTable const* m_pTable = nullptr;
};
