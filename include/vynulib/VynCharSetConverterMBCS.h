#pragma once

#include <vynulib/LookupTable.h>
#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynLazy.h>

namespace vyn {
class MultibyteTables;
}

/// Base of the multibyte sets within the Basic Multilingual Plane: owns the tables in both directions, which are built
/// from a compiled map at the first conversion. An instance without a map converts nothing.
class VYNULIB_API VynCharSetConverterMBCS : public VynCharSetConverter {
public:
    /// `table`: pairs of a code and its UTF-16 unit, ended by the pair (0, 0). It must outlive the converter. Of two
    /// pairs with the same code or unit the later counts in that direction.
    constexpr VynCharSetConverterMBCS(unsigned short const* table, VynCharSet cs) noexcept
        : VynCharSetConverter(cs), m_pTable(table) {}

    /// A converter that knows its map by name only and so has none.
    constexpr VynCharSetConverterMBCS(char const* name, VynCharSet cs) noexcept
        : VynCharSetConverter(cs), m_pName(name) {}

    ~VynCharSetConverterMBCS() override;

    /// Builds the tables, if they are not there yet. Conversions call it themselves.
    virtual void load();

protected:
    /// Values under codes or under units.
    using Table = LookupTable<unsigned short>;

    /// Unit of each code. Null until `load`, and for good without a map.
    Table const* forwardTable() const noexcept;

    /// Code of each unit. There when the forward table is.
    Table const* reverseTable() const noexcept;

    /// What `table` was given as, null if nothing.
    unsigned short const* map() const noexcept { return m_pTable; }

    /// All tables of the set, published as a whole. A set with more than two has a `load` of its own.
    vyn::Lazy<vyn::MultibyteTables> m_tables;

private:
    [[maybe_unused]] char const* m_pName = nullptr;
    unsigned short const* m_pTable = nullptr;
};
