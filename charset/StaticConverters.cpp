#include "charset/StaticConverters.h"

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

#include <array>

// The static objects of the subsystem stand in this one file, because its order is theirs: the registry is made last and
// destroyed first. The converters need no code to be made and are there before any other static object.

namespace {

struct Converters {
    VynCharSetConverterSBCS singleByte[26] = {
        {oCP1250map, VYNCS_WCP1250},      {oCP1251map, VYNCS_WCP1251},      {oCP1252map, VYNCS_WCP1252},
        {oCP1253map, VYNCS_WCP1253},      {oCP1254map, VYNCS_WCP1254},      {oCP1255map, VYNCS_WCP1255},
        {oCP1256map, VYNCS_WCP1256},      {oCP1257map, VYNCS_WCP1257},      {oCP1258map, VYNCS_WCP1258},
        {oCP874map, VYNCS_WCP874},        {o8859_1map, VYNCS_ISO_8859_1},   {o8859_2map, VYNCS_ISO_8859_2},
        {o8859_3map, VYNCS_ISO_8859_3},   {o8859_4map, VYNCS_ISO_8859_4},   {o8859_5map, VYNCS_ISO_8859_5},
        {o8859_6map, VYNCS_ISO_8859_6},   {o8859_7map, VYNCS_ISO_8859_7},   {o8859_8map, VYNCS_ISO_8859_8},
        {o8859_9map, VYNCS_ISO_8859_9},   {o8859_10map, VYNCS_ISO_8859_10}, {o8859_11map, VYNCS_ISO_8859_11},
        {o8859_13map, VYNCS_ISO_8859_13}, {o8859_14map, VYNCS_ISO_8859_14}, {o8859_15map, VYNCS_ISO_8859_15},
        {o8859_16map, VYNCS_ISO_8859_16}, {oKOI8Rmap, VYNCS_KOI8R},
    };
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
    constexpr std::size_t singleByteSets = std::extent_v<decltype(Converters::singleByte)>;
    Converters& all = converters.object;
    VynCharSetConverter* const others[] = {
        &all.wcp932, &all.wcp936,   &all.wcp949,   &all.wcp950, &all.eucKr, &all.eucCn, &all.eucJp,    &all.gb18030,
        &all.big5,   &all.shiftJis, &all.sjis0213, &all.utf8,   &all.utf16, &all.utf32, &all.utf16Esc,
    };
    std::array<VynCharSetConverter*, singleByteSets + std::size(others)> order{};
    std::size_t count = 0;
    for (VynCharSetConverterSBCS& converter : all.singleByte)
        order[count++] = &converter;
    for (VynCharSetConverter* converter : others)
        order[count++] = converter;
    return order;
}();

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

std::span<VynCharSetConverter* const> vyn::staticConverters() {
    return registrationOrder;
}

VynCharSetConverter* vyn::staticUtf8Converter() {
    return &converters.object.utf8;
}

constinit CharSetConverterManager& g_oCnvtMgr = registry.object;
