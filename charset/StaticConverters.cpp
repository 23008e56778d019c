#include "charset/ServedSets.h"

#include "base/LoadedObject.h"
#include "tables/Tables.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/VynCharSetConverterDBCS.h>
#include <vynulib/VynCharSetConverterDBCSEx.h>
#include <vynulib/VynCharSetConverterEUC_CN_KR.h>
#include <vynulib/VynCharSetConverterEUC_JP.h>
#include <vynulib/VynCharSetConverterGB18030.h>
#include <vynulib/VynCharSetConverterSBCS.h>
#include <vynulib/VynCharSetConverterUTF16.h>
#include <vynulib/VynCharSetConverterUTF16Esc.h>
#include <vynulib/VynCharSetConverterUTF32.h>
#include <vynulib/VynCharSetConverterUTF8.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

// The static objects of the subsystem stand in this one file, because its order is theirs: the registry is made last and
// destroyed first. The converters need no code to be made and are there before any other static object.

namespace {

struct SingleByteSet {
    VynCharSet cs;
    unsigned short const* map;
};

constexpr SingleByteSet singleByteSets[] = {
    {VYNCS_WCP1250, oCP1250map},      {VYNCS_WCP1251, oCP1251map},      {VYNCS_WCP1252, oCP1252map},
    {VYNCS_WCP1253, oCP1253map},      {VYNCS_WCP1254, oCP1254map},      {VYNCS_WCP1255, oCP1255map},
    {VYNCS_WCP1256, oCP1256map},      {VYNCS_WCP1257, oCP1257map},      {VYNCS_WCP1258, oCP1258map},
    {VYNCS_WCP874, oCP874map},        {VYNCS_ISO_8859_1, o8859_1map},   {VYNCS_ISO_8859_2, o8859_2map},
    {VYNCS_ISO_8859_3, o8859_3map},   {VYNCS_ISO_8859_4, o8859_4map},   {VYNCS_ISO_8859_5, o8859_5map},
    {VYNCS_ISO_8859_6, o8859_6map},   {VYNCS_ISO_8859_7, o8859_7map},   {VYNCS_ISO_8859_8, o8859_8map},
    {VYNCS_ISO_8859_9, o8859_9map},   {VYNCS_ISO_8859_10, o8859_10map}, {VYNCS_ISO_8859_11, o8859_11map},
    {VYNCS_ISO_8859_13, o8859_13map}, {VYNCS_ISO_8859_14, o8859_14map}, {VYNCS_ISO_8859_15, o8859_15map},
    {VYNCS_ISO_8859_16, o8859_16map}, {VYNCS_KOI8R, oKOI8Rmap},
};
constexpr std::size_t singleByteCount = std::size(singleByteSets);

struct SingleByteConverters {
    template <std::size_t... I>
    constexpr explicit SingleByteConverters(std::index_sequence<I...>)
        : bySet{{singleByteSets[I].map, singleByteSets[I].cs}...} {}

    VynCharSetConverterSBCS bySet[singleByteCount];
};

struct Converters {
    SingleByteConverters singleByte{std::make_index_sequence<singleByteCount>()};
    VynCharSetConverterDBCS wcp932{oCP932map, oCP932Type, VYNCS_WCP932};
    VynCharSetConverterDBCS wcp936{oCP936map, oCP936Type, VYNCS_WCP936};
    VynCharSetConverterDBCS wcp949{oCP949map, oCP949Type, VYNCS_WCP949};
    VynCharSetConverterDBCS wcp950{oCP950map, oCP950Type, VYNCS_WCP950};
    VynCharSetConverterGB18030 gb18030{oGBKmap, VYNCS_GB18030};
    VynCharSetConverterDBCS big5{oBIG5map, oBig5Type, VYNCS_BIG5};
    VynCharSetConverterDBCS shiftJis{oSHIFTJISmap, oCP932Type, VYNCS_SHIFTJIS};
    VynCharSetConverterDBCSEx sjis0213{oSJIS0213_2004map, oCP932Type, VYNCS_SJIS0213};
    VynCharSetConverterEUC_CN_KR eucKr{oKSX1001map, VYNCS_EUC_KR};
    VynCharSetConverterEUC_CN_KR eucCn{oGB2312map, VYNCS_EUC_CN};
    VynCharSetConverterEUC_JP eucJp{oJIS0208map, oJIS0201map, oJIS0212map, VYNCS_EUC_JP};
    VynCharSetConverterUTF8 utf8{VYNCS_UTF8};
    VynCharSetConverterUTF16 utf16{VYNCS_UTF16};
    VynCharSetConverterUTF32 utf32{VYNCS_UTF32};
    VynCharSetConverterUTF16Esc utf16Esc{VYNCS_UTF16ESC};
};

constinit vyn::LoadedObject<Converters> converters;
constinit vyn::LoadedObject<CharSetConverterManager> registry{vyn::LoadedObject<CharSetConverterManager>::Later{}};

constexpr auto registrationOrder = [] {
    Converters& all = converters.object;
    vyn::ServedSet const others[] = {
        {VYNCS_WCP932, &all.wcp932, &vyn::doubleByteOperations},
        {VYNCS_WCP936, &all.wcp936, &vyn::doubleByteOperations},
        {VYNCS_WCP949, &all.wcp949, &vyn::doubleByteOperations},
        {VYNCS_WCP950, &all.wcp950, &vyn::doubleByteOperations},
        {VYNCS_EUC_KR, &all.eucKr, &vyn::eucCnKrOperations},
        {VYNCS_EUC_CN, &all.eucCn, &vyn::eucCnKrOperations},
        {VYNCS_EUC_JP, &all.eucJp, &vyn::eucJpOperations},
        {VYNCS_GB18030, &all.gb18030, &vyn::gb18030Operations},
        {VYNCS_BIG5, &all.big5, &vyn::doubleByteOperations},
        {VYNCS_SHIFTJIS, &all.shiftJis, &vyn::doubleByteOperations},
        {VYNCS_SJIS0213, &all.sjis0213, &vyn::doubleByteExOperations},
        {VYNCS_UTF8, &all.utf8, &vyn::utf8Operations},
        {VYNCS_UTF16, &all.utf16, &vyn::utf16LeOperations},
        {VYNCS_UTF32, &all.utf32, &vyn::utf32LeOperations},
        {VYNCS_UTF16ESC, &all.utf16Esc, &vyn::utf16EscOperations},
    };
    std::array<vyn::ServedSet, singleByteCount + std::size(others)> order{};
    for (std::size_t i = 0; i < singleByteCount; ++i)
        order[i] = {singleByteSets[i].cs, &all.singleByte.bySet[i], &vyn::singleByteOperations};
    std::copy(std::begin(others), std::end(others), order.begin() + singleByteCount);
    return order;
}();

constexpr auto servedSets = [] {
    std::array<vyn::ServedSet, registrationOrder.size() + 2> sets{};
    auto end = std::copy(registrationOrder.begin(), registrationOrder.end(), sets.begin());
    *end++ = {VYNCS_UTF16BE, nullptr, &vyn::utf16BeOperations};
    *end++ = {VYNCS_UTF32BE, nullptr, &vyn::utf32BeOperations};
    return sets;
}();

/// Finds a served set at once: each has a slot of its own, where its place in `servedSets` stands.
class ServedSlots {
public:
    constexpr ServedSlots() {
        while (!fill())
            m_multiplier *= 0x9E3779B1; // the next of many odd numbers
    }

    /// The set of this number if there is one; otherwise any.
    constexpr vyn::ServedSet const& find(VynCharSet cs) const { return servedSets[m_places[slotOf(cs)]]; }

private:
    constexpr std::size_t slotOf(VynCharSet cs) const { return static_cast<unsigned>(cs) * m_multiplier >> 24; }

    constexpr bool fill() {
        std::fill(std::begin(m_places), std::end(m_places), static_cast<unsigned char>(0));
        for (std::size_t place = 0; place < servedSets.size(); ++place)
            m_places[slotOf(servedSets[place].cs)] = static_cast<unsigned char>(place);
        return std::all_of(servedSets.begin(), servedSets.end(),
                           [this](vyn::ServedSet const& set) { return &find(set.cs) == &set; });
    }

    unsigned m_multiplier = 0x9E3779B1;
    unsigned char m_places[256] = {};
};

constexpr ServedSlots slots;

[[gnu::constructor]] void load() {
    registry.create();
}

[[gnu::destructor]] void unload() {
    if (vyn::processIsEnding())
        return;
    registry.destroy();
    converters.destroy();
}

} // namespace

std::span<vyn::ServedSet const> vyn::registeredSets() {
    return registrationOrder;
}

vyn::ServedSet const* vyn::servedSet(VynCharSet cs) noexcept {
    ServedSet const& set = slots.find(cs);
    return set.cs == cs ? &set : nullptr;
}

vyn::ServedSet const* vyn::setBehind(VynCharSet cs) {
    VynCharSetConverter const* const converter = VynCharSetConverter::getConverter(cs);
    for (VynCharSet const candidate : {cs == VYNCS_OS_DEFAULT ? defaultSetOf(g_oCnvtMgr) : cs, VYNCS_UTF8})
        if (ServedSet const* const set = servedSet(candidate); set && set->converter == converter)
            return set;
    return nullptr;
}

vyn::ServedSet const& vyn::requireServedSet(VynCharSet cs) {
    ServedSet const* const set = servedSet(cs == VYNCS_OS_DEFAULT ? defaultSetOf(g_oCnvtMgr) : cs);
    if (!set)
        throw std::invalid_argument("no such character set is served");
    return *set;
}

constinit CharSetConverterManager& g_oCnvtMgr = registry.object;
