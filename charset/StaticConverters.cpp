#include "charset/StaticConverters.h"

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

// All static objects of the subsystem stand in this one file, because its order is theirs: the registry is made last
// and destroyed first. The converters need no code to be made and are there before any other static object.

namespace {

constinit VynCharSetConverterSBCS g_oSingleByteConverters[] = {
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

constinit VynCharSetConverterDBCS g_oConverterWCP932(oCP932map, oCP932Type, VYNCS_WCP932);
constinit VynCharSetConverterDBCS g_oConverterWCP936(oCP936map, oCP936Type, VYNCS_WCP936);
constinit VynCharSetConverterDBCS g_oConverterWCP949(oCP949map, oCP949Type, VYNCS_WCP949);
constinit VynCharSetConverterDBCS g_oConverterWCP950(oCP950map, oCP950Type, VYNCS_WCP950);
constinit VynCharSetConverterGB18030 g_oConverterGB18030(oGBKmap, VYNCS_GB18030);
constinit VynCharSetConverterDBCS g_oConverterBIG5(oBIG5map, oBig5Type, VYNCS_BIG5);
constinit VynCharSetConverterDBCS g_oConverterSHIFTJIS(oSHIFTJISmap, oCP932Type, VYNCS_SHIFTJIS);
constinit VynCharSetConverterDBCSEx g_oConverterSJIS0213(oSJIS0213_2004map, oCP932Type, VYNCS_SJIS0213);
constinit VynCharSetConverterEUC_CN_KR g_oConverterEUC_KR(oKSX1001map, VYNCS_EUC_KR);
constinit VynCharSetConverterEUC_CN_KR g_oConverterEUC_CN(oGB2312map, VYNCS_EUC_CN);
constinit VynCharSetConverterEUC_JP g_oConverterEUC_JP(oJIS0208map, oJIS0201map, oJIS0212map, VYNCS_EUC_JP);
constinit VynCharSetConverterUTF8 g_oConverterUTF8(VYNCS_UTF8);
constinit VynCharSetConverterUTF16 g_oConverterUTF16(VYNCS_UTF16);
constinit VynCharSetConverterUTF32 g_oConverterUTF32(VYNCS_UTF32);
constinit VynCharSetConverterUTF16Esc g_oConverterUTF16Esc(VYNCS_UTF16ESC);

constexpr std::size_t singleByteSets = std::size(g_oSingleByteConverters);

constexpr VynCharSetConverter* g_otherConverters[] = {
    &g_oConverterWCP932,   &g_oConverterWCP936, &g_oConverterWCP949,  &g_oConverterWCP950, &g_oConverterEUC_KR,
    &g_oConverterEUC_CN,   &g_oConverterEUC_JP, &g_oConverterGB18030, &g_oConverterBIG5,   &g_oConverterSHIFTJIS,
    &g_oConverterSJIS0213, &g_oConverterUTF8,   &g_oConverterUTF16,   &g_oConverterUTF32,  &g_oConverterUTF16Esc,
};

constexpr auto g_registrationOrder = [] {
    std::array<VynCharSetConverter*, singleByteSets + std::size(g_otherConverters)> converters{};
    std::size_t count = 0;
    for (VynCharSetConverterSBCS& converter : g_oSingleByteConverters)
        converters[count++] = &converter;
    for (VynCharSetConverter* converter : g_otherConverters)
        converters[count++] = converter;
    return converters;
}();

} // namespace

std::span<VynCharSetConverter* const> vyn::staticConverters() {
    return g_registrationOrder;
}

VynCharSetConverter* vyn::staticUtf8Converter() {
    return &g_oConverterUTF8;
}

CharSetConverterManager g_oCnvtMgr;
