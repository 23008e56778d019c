#include <vynulib/CharSetConverterManager.h>

#include "charset/ServedSets.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <string_view>
#include <utility>

namespace {

struct CharSetName {
    VynCharSet cs;
    char const* name;
};

constexpr CharSetName charSetNames[] = {
#define VYN_CHARSET_NAME(name, number) {name, #name},
    VYN_CHARSETS(VYN_CHARSET_NAME)
#undef VYN_CHARSET_NAME
};

// Threads that race for the first use store the same value.
constinit std::atomic<VynCharSetConverter*> cachedUtf8Converter{nullptr};
constinit std::atomic<VynCharSetConverter*> cachedOsDefaultConverter{nullptr};

VynCharSetConverter* cached(std::atomic<VynCharSetConverter*>& cache, VynCharSet cs) {
    VynCharSetConverter* converter = cache.load(std::memory_order_relaxed);
    if (!converter) {
        converter = g_oCnvtMgr.getConverter(cs);
        cache.store(converter, std::memory_order_relaxed);
    }
    return converter;
}

} // namespace

VynCharSetConverter* VynCharSetConverter::getConverter(VynCharSet cs) {
    if (cs == VYNCS_UTF8)
        return cached(cachedUtf8Converter, cs);
    if (cs == VYNCS_OS_DEFAULT)
        return cached(cachedOsDefaultConverter, cs);
    // The sets that the registry was made with keep their converters: they are found without it.
    if (vyn::ServedSet const* const set = vyn::servedSet(cs); set && set->converter)
        return set->converter;
    return g_oCnvtMgr.getConverter(cs);
}

VynCharSet vyn::defaultSetOf(CharSetConverterManager const& registry) noexcept {
    return registry.m_eDefaultCharSet;
}

CharSetConverterManager::CharSetConverterManager() {
    try {
        initLocaleMap();
        m_eDefaultCharSet = getDefaultCharSet();
        for (vyn::ServedSet const& set : vyn::registeredSets())
            insert(set.cs, set.converter, true);
        for (CharSetName const& row : charSetNames)
            insertCharSetMap(row.cs, VynUString(row.name, VYNCS_UTF8));
    } catch (std::exception const&) {
        if (this != &g_oCnvtMgr)
            throw;
        // Nobody could catch what leaves the load. What the maps lack is found in the tables that they are made of.
    }
}

CharSetConverterManager::~CharSetConverterManager() {
    for (auto const& [cs, info] : m_oConverterMap)
        if (!info.m_bStatic)
            delete info.m_pConverter;
}

void CharSetConverterManager::insert(VynCharSet cs, VynCharSetConverter* conv, bool isStatic) {
    m_oConverterMap.try_emplace(cs, ConverterInfo{isStatic, conv});
}

void CharSetConverterManager::insertCharSetMap(VynCharSet cs, VynUString const& name) {
    // A name is rendered before anybody can find it, so that looking it up only reads. What needs memory comes first, so
    // that a name is never known in one direction only.
    std::map<VynCharSet, VynUString> rendered;
    rendered.try_emplace(cs, name).first->second.c_str(VYNCS_ISO_8859_1);
    m_oNameMap.try_emplace(name, cs);
    m_oCharSetNameMap.merge(rendered);
}

VynCharSetConverter* CharSetConverterManager::getConverter(VynCharSet cs) {
    if (cs == VYNCS_OS_DEFAULT)
        cs = m_eDefaultCharSet;
    if (auto const found = m_oConverterMap.find(cs); found != m_oConverterMap.end())
        return found->second.m_pConverter;
    vyn::ServedSet const* const set = vyn::servedSet(cs);
    return set && set->converter ? set->converter : load(cs);
}

VynCharSetConverter* CharSetConverterManager::load(VynCharSet) {
    return vyn::servedSet(VYNCS_UTF8)->converter;
}

char const* CharSetConverterManager::charSetToString(VynCharSet cs) {
    if (auto const found = m_oCharSetNameMap.find(cs); found != m_oCharSetNameMap.end())
        return found->second.c_str(VYNCS_ISO_8859_1);
    auto const* const row = std::ranges::find(charSetNames, cs, &CharSetName::cs);
    return row != std::end(charSetNames) ? row->name : "VYNCS_OS_DEFAULT";
}

VynCharSet CharSetConverterManager::charSetFromString(char const* name) {
    if (!name || *name == '\0')
        return VYNCS_OS_DEFAULT;
    if (auto const found = m_oNameMap.find(VynUString(name, VYNCS_ISO_8859_1)); found != m_oNameMap.end())
        return found->second;
    auto const* const row = std::ranges::find(charSetNames, std::string_view(name), &CharSetName::name);
    return row != std::end(charSetNames) ? row->cs : VYNCS_OS_DEFAULT;
}
