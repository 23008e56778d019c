#pragma once

#include "converters/kernels/DoubleByteRows.h"

#include <vynulib/LookupTable.h>
#include <vynulib/LookupTableEx.h>
#include <vynulib/sMBCSExTable.h>

#include <memory>

namespace vyn {

/// The tables of a multibyte set in both directions. Sets with more of them derive from it.
class MultibyteTables {
public:
    /// `map`: pairs of a code and its unit up to (0, 0); of two with the same code or unit the later counts. Null: no
    /// pairs.
    explicit MultibyteTables(unsigned short const* map) {
        enter(map);
        for (unsigned short unit = ' '; unit < 0x7F; ++unit)
            m_keepsAscii &= forward.lookup(unit) == unit && reverse.lookup(unit) == unit;
    }
    MultibyteTables(MultibyteTables const&) = delete;
    MultibyteTables& operator=(MultibyteTables const&) = delete;
    virtual ~MultibyteTables() = default;

    LookupTable<unsigned short> forward;        // unit of each code
    LookupTable<unsigned short> reverse;        // code of each unit
    std::unique_ptr<DoubleByteRows const> rows; // if the set's codec has given them

    /// Whether the printable characters of ASCII are their own codes.
    bool keepsAscii() const { return m_keepsAscii; }

protected:
    void enter(unsigned short const* map) {
        for (auto const* pair = map; pair && (pair[0] != 0 || pair[1] != 0); pair += 2) {
            forward.insert(pair[0], pair[1]);
            reverse.insert(pair[1], pair[0]);
        }
    }

private:
    bool m_keepsAscii = true;
};

/// The same for a set with characters beyond the Basic Multilingual Plane.
struct MultibyteExTables {
    /// `map`: records up to {0, 0}. A value above U+10FFFF is known to the decoder only.
    explicit MultibyteExTables(sMBCSExTable const* map) {
        for (auto const* record = map; record->code != 0 || record->unicode != 0; ++record) {
            auto const code = static_cast<unsigned short>(record->code);
            forward.insert(code, record->unicode);
            reverse.insert(record->unicode, code);
        }
    }

    LookupTable<unsigned int> forward;          // scalar value of each code
    LookupTableEx<unsigned short> reverse;      // code of each scalar value
    std::unique_ptr<DoubleByteRows const> rows; // if the set's codec has given them
};

/// Tables made by `Made(arguments...)`, with the rows of the codec that `codecOf(tables)` returns.
template <class Made, class CodecOf, class... Arguments>
std::unique_ptr<Made> makeTablesWithRows(CodecOf codecOf, Arguments... arguments) {
    auto tables = std::make_unique<Made>(arguments...);
    tables->rows = std::make_unique<DoubleByteRows>(codecOf(tables.get()));
    return tables;
}

} // namespace vyn
