#pragma once

#include <vynulib/VynCharSet.h>

#include <string_view>

namespace vyn {

struct SetNames {
    VynCharSet cs;
    std::string_view preferred;
    /// Separated by blanks. Numbers need none, nor do those after "cp", "windows" and the like.
    std::string_view aliases;
};

/// The served sets in the order of `VynCharSet.h`, and the default set last. Where people mean different sets by one
/// name, the comment says which reading is ours. US-ASCII is a set of its own and no name of ISO 8859-1 or 1252.
inline constexpr SetNames setNames[] = {
    // Browsers read the names of ISO 8859-1, 8859-9 and 8859-11 as the Windows sets that extend them.
    {VYNCS_ISO_8859_1, "ISO-8859-1",
     "ISO_8859-1:1987 ISO8859 8859 8859_1 ISO-IR-100 latin latin1 l1 csISOLatin1 cp819 IBM819"},
    {VYNCS_ISO_8859_2, "ISO-8859-2", "ISO_8859-2:1987 8859_2 ISO-IR-101 latin2 l2 csISOLatin2 cp912 IBM912"},
    {VYNCS_ISO_8859_3, "ISO-8859-3", "ISO_8859-3:1988 8859_3 ISO-IR-109 latin3 l3 csISOLatin3"},
    {VYNCS_ISO_8859_4, "ISO-8859-4", "ISO_8859-4:1988 8859_4 ISO-IR-110 latin4 l4 csISOLatin4"},
    {VYNCS_ISO_8859_5, "ISO-8859-5", "ISO_8859-5:1988 8859_5 ISO-IR-144 cyrillic csISOLatinCyrillic cp915 IBM915"},
    // The names in -E and -I tell the direction of the text, not other codes; so do "visual" and "logical".
    {VYNCS_ISO_8859_6, "ISO-8859-6",
     "ISO_8859-6:1987 8859_6 ISO-IR-127 arabic ASMO-708 ECMA-114 csISOLatinArabic cp1089 IBM1089 "
     "ISO-8859-6-E csISO88596E ISO-8859-6-I csISO88596I"},
    {VYNCS_ISO_8859_7, "ISO-8859-7",
     "ISO_8859-7:1987 ISO_8859-7:2003 8859_7 ISO-IR-126 greek greek8 ELOT_928 ECMA-118 csISOLatinGreek sun_eu_greek"},
    {VYNCS_ISO_8859_8, "ISO-8859-8",
     "ISO_8859-8:1988 8859_8 ISO-IR-138 hebrew csISOLatinHebrew "
     "ISO-8859-8-E csISO88598E visual ISO-8859-8-I csISO88598I logical"},
    {VYNCS_ISO_8859_9, "ISO-8859-9",
     "ISO_8859-9:1989 8859_9 ISO-IR-148 latin5 l5 csISOLatin5 ECMA-128 TS-5881 cp920 IBM920"},
    {VYNCS_ISO_8859_10, "ISO-8859-10", "ISO_8859-10:1992 ISO-IR-157 latin6 l6 csISOLatin6"},
    // IANA registers TIS-620 and ISO-8859-11 as one; they differ in the no-break space only.
    {VYNCS_ISO_8859_11, "ISO-8859-11",
     "ISO_8859-11:2001 TIS-620 TIS620-0 TIS620.2529-1 TIS620.2533-0 csTIS620 ISO-IR-166 thai"},
    {VYNCS_ISO_8859_13, "ISO-8859-13", "8859_13 ISO-IR-179 latin7 l7 baltic csISO885913"},
    {VYNCS_ISO_8859_14, "ISO-8859-14", "ISO_8859-14:1998 ISO-IR-199 latin8 l8 ISO-celtic csISO885914"},
    {VYNCS_ISO_8859_15, "ISO-8859-15", "ISO_8859-15:1998 8859_15 ISO-IR-203 Latin-9 l9 latin0 csISO885915 csISOLatin9"},
    {VYNCS_ISO_8859_16, "ISO-8859-16", "ISO_8859-16:2001 ISO-IR-226 latin10 l10 csISO885916"},
    {VYNCS_WCP1250, "windows-1250", "MS-EE"},
    {VYNCS_WCP1251, "windows-1251", "MS-CYRL"},
    {VYNCS_WCP1252, "windows-1252", "MS-ANSI"},
    {VYNCS_WCP1253, "windows-1253", "MS-GREEK"},
    {VYNCS_WCP1254, "windows-1254", "MS-TURK"},
    {VYNCS_WCP1255, "windows-1255", "MS-HEBR"},
    {VYNCS_WCP1256, "windows-1256", "MS-ARAB"},
    {VYNCS_WCP1257, "windows-1257", "WinBaltRim"},
    {VYNCS_WCP1258, "windows-1258", ""},
    {VYNCS_WCP874, "windows-874", "DOS-874 IBM874"},
    // Names with the number 932, and the IANA name of Windows's set, are this one; the names of Shift_JIS are 30932,
    // though browsers hold all of them for one set.
    {VYNCS_WCP932, "Windows-31J", "csWindows31J SJIS-open SJIS-win IBM932 csIBM932"},
    {VYNCS_WCP936, "GBK", "csGBK x-gbk"},
    // KS_C_5601-1987 is what Windows calls this set. It holds all of EUC-KR, for which others use that name.
    {VYNCS_WCP949, "WCP949", "UHC MSCP949 KS_C_5601-1987 KS_C_5601-1989 KSC_5601 csKSC56011987 ISO-IR-149 korean"},
    {VYNCS_WCP950, "WCP950", "IBM950"}, // names without the number are 30950
    {VYNCS_KOI8R, "KOI8-R", "csKOI8R koi koi8"},
    {VYNCS_GB18030, "GB18030", "csGB18030 GB18030-2000"},
    {VYNCS_BIG5, "Big5", "csBig5 Big-Five Big5-TW CN-Big5 x-x-big5"}, // not Big5-HKSCS, which is another set
    {VYNCS_SHIFTJIS, "Shift_JIS", "SJIS x-sjis MS_Kanji csShiftJIS IBM943 csIBM943"},
    {VYNCS_SJIS0213, "SJIS0213", "SJISX0213 Shift_JISX0213 SJIS-2004 Shift_JIS-2004"},
    {VYNCS_EUC_JP, "EUC-JP", "Extended_UNIX_Code_Packed_Format_for_Japanese csEUCPkdFmtJapanese x-euc-jp UJIS"},
    // GB_2312-80 is strictly the 7-bit set, but this is the form that text has. Browsers read these names as GBK.
    {VYNCS_EUC_CN, "GB2312",
     "csGB2312 EUC-CN x-euc-cn eucGB2312-CN CN-GB GB_2312-80 GB2312-1980 csISO58GB231280 ISO-IR-58 chinese"},
    {VYNCS_EUC_KR, "EUC-KR", "csEUCKR x-euc-kr KS_X_1001"},
    {VYNCS_UTF8, "UTF-8", "csUTF8 u8 utf unicode-1-1-utf-8 unicode-2-0-utf-8 x-unicode20utf8"},
    // The names without a byte order are little-endian, though iconv's UCS-4 is big-endian, and others decide by a
    // byte-order mark.
    {VYNCS_UTF16, "UTF-16",
     "csUTF16 u16 UCS-2 ISO-10646-UCS-2 csUnicode unicode "
     "UTF-16LE csUTF16LE x-utf-16le UCS-2LE unicodeFEFF unicodeLittle unicodeLittleUnmarked"},
    {VYNCS_UTF16BE, "UTF-16BE", "csUTF16BE x-utf-16be UCS-2BE unicodeFFFE unicodeBig unicodeBigUnmarked"},
    {VYNCS_UTF16ESC, "UTF16ESC", ""},
    {VYNCS_UTF32, "UTF-32", "csUTF32 u32 UCS-4 ISO-10646-UCS-4 csUCS4 UTF-32LE csUTF32LE UCS-4LE"},
    {VYNCS_UTF32BE, "UTF-32BE", "csUTF32BE UCS-4BE"},
    {VYNCS_OS_DEFAULT, "OS_DEFAULT", ""},
};

} // namespace vyn
