#pragma once

/// @file
/// The registry of sets and converters.

#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynUString.h>

#include <map>

class CharSetConverterManager;

namespace vyn {
VynCharSet defaultSetOf(CharSetConverterManager const& registry) noexcept;
}

/// A registered converter.
struct ConverterInfo {
    bool m_bStatic;                    ///< False: the registry deletes the converter when it is destroyed itself.
    VynCharSetConverter* m_pConverter; ///< The converter.
};

/// The registry: which converter serves which set, the sets' names, and the default set.
///
/// Filled when it is constructed, which for the library's own `g_oCnvtMgr` is when the library is loaded, and only read
/// afterwards: lookups need no lock. `insert` and `insertCharSetMap` must not run beside them.
class VYNULIB_API CharSetConverterManager {
public:
    /// Registers the library's converters and names, and detects the default set. Throws `std::bad_alloc`.
    CharSetConverterManager();
    CharSetConverterManager(CharSetConverterManager const&) = delete;
    CharSetConverterManager& operator=(CharSetConverterManager const&) = delete;
    ~CharSetConverterManager();

    /// Registers `conv` for `cs`. Does nothing if the set is served already: the converter is then not taken over
    /// either. Throws `std::bad_alloc`, and changes nothing then.
    void insert(VynCharSet cs, VynCharSetConverter* conv, bool isStatic);

    /// Registers `name` for `cs`, in both directions; a name or set that is there already keeps what it has. Throws
    /// `std::bad_alloc`, and changes nothing then.
    void insertCharSetMap(VynCharSet cs, VynUString const& name);

    /// The converter that serves `cs`, never null; see `VynCharSetConverter::getConverter`.
    VynCharSetConverter* getConverter(VynCharSet cs);

    /// Answers for a set `cs` that is not registered: the UTF-8 converter, which stays the library's.
    VynCharSetConverter* load(VynCharSet cs);

    /// The name of a set, "VYNCS_OS_DEFAULT" without one; as `VynCharSetToString`. The text lives as long as this
    /// registry.
    char const* charSetToString(VynCharSet cs);

    /// The set of exactly this name, `VYNCS_OS_DEFAULT` for null, empty and unknown names; as `VynCharSetFromString`.
    VynCharSet charSetFromString(char const* name);

    /// Fills the table of locale codeset names. Part of the construction.
    void initLocaleMap();

    /// Detects the set of the process's locale, from the environment variable `LANG` or else `setlocale`; ISO 8859-1
    /// where that names none that is known. Detects anew at each call and changes nothing.
    VynCharSet getDefaultCharSet();

private:
    friend VynCharSet vyn::defaultSetOf(CharSetConverterManager const& registry) noexcept;

    std::map<VynUString, VynCharSet> m_oLocaleMap; // by codeset name in upper case, without '-'
    VynCharSet m_eDefaultCharSet = VYNCS_ISO_8859_1;
    std::map<VynCharSet, ConverterInfo> m_oConverterMap;
    std::map<VynUString, VynCharSet> m_oNameMap;
    std::map<VynCharSet, VynUString> m_oCharSetNameMap;
};

/// The one registry of the library, there from when it is loaded until it is unloaded. It is not destroyed where the
/// process ends, and neither are the converters that it owns then: threads may still convert. Where memory runs out while
/// it is filled, the library loads all the same, with all its sets and names; the default set is then ISO 8859-1 if it was
/// not detected before.
extern VYNULIB_API CharSetConverterManager& g_oCnvtMgr;
