#pragma once

/// @file
/// The character sets, and conversion in one call.

#include <vynulib/VynExport.h>

/// The named character sets, one ROW(enumerator, number) each. The enumerator is also the set's name as text.
/// The enumeration and the registry's names both come from this list, the names in this order.
#define VYN_CHARSETS(ROW)                                                                                              \
    ROW(VYNCS_ISO_8859_1, 28591)                                                                                       \
    ROW(VYNCS_ISO_8859_2, 28592)                                                                                       \
    ROW(VYNCS_ISO_8859_3, 28593)                                                                                       \
    ROW(VYNCS_ISO_8859_4, 28594)                                                                                       \
    ROW(VYNCS_ISO_8859_5, 28595)                                                                                       \
    ROW(VYNCS_ISO_8859_6, 28596)                                                                                       \
    ROW(VYNCS_ISO_8859_7, 28597)                                                                                       \
    ROW(VYNCS_ISO_8859_8, 28598)                                                                                       \
    ROW(VYNCS_ISO_8859_9, 28599)                                                                                       \
    ROW(VYNCS_ISO_8859_10, 28600)                                                                                      \
    ROW(VYNCS_ISO_8859_11, 28601)                                                                                      \
    ROW(VYNCS_ISO_8859_13, 28603)                                                                                      \
    ROW(VYNCS_ISO_8859_14, 28604)                                                                                      \
    ROW(VYNCS_ISO_8859_15, 28605)                                                                                      \
    ROW(VYNCS_ISO_8859_16, 28606)                                                                                      \
    ROW(VYNCS_ISO_2022JP, 50220)                                                                                       \
    ROW(VYNCS_ISO_2022JP_1, 50221)                                                                                     \
    ROW(VYNCS_ISO_2022JP_2, 50222)                                                                                     \
    ROW(VYNCS_ISO_2022JP_3, 50223)                                                                                     \
    ROW(VYNCS_ISO_2022JP_2004, 50224)                                                                                  \
    ROW(VYNCS_ISO_2022KR, 50225)                                                                                       \
    ROW(VYNCS_ISO_2022CN, 50227)                                                                                       \
    ROW(VYNCS_ISO_2022CN_EXT, 50228)                                                                                   \
    ROW(VYNCS_ISO_2022TW, 50229)                                                                                       \
    ROW(VYNCS_WCP1250, 1250)                                                                                           \
    ROW(VYNCS_WCP1251, 1251)                                                                                           \
    ROW(VYNCS_WCP1252, 1252)                                                                                           \
    ROW(VYNCS_WCP1253, 1253)                                                                                           \
    ROW(VYNCS_WCP1254, 1254)                                                                                           \
    ROW(VYNCS_WCP1255, 1255)                                                                                           \
    ROW(VYNCS_WCP1256, 1256)                                                                                           \
    ROW(VYNCS_WCP1257, 1257)                                                                                           \
    ROW(VYNCS_WCP1258, 1258)                                                                                           \
    ROW(VYNCS_WCP874, 874)                                                                                             \
    ROW(VYNCS_WCP932, 932)                                                                                             \
    ROW(VYNCS_WCP936, 936)                                                                                             \
    ROW(VYNCS_WCP949, 949)                                                                                             \
    ROW(VYNCS_WCP950, 950)                                                                                             \
    ROW(VYNCS_KOI8R, 20866)                                                                                            \
    ROW(VYNCS_GB18030, 54936)                                                                                          \
    ROW(VYNCS_BIG5, 30950)                                                                                             \
    ROW(VYNCS_SHIFTJIS, 30932)                                                                                         \
    ROW(VYNCS_SJIS0213, 30933)                                                                                         \
    ROW(VYNCS_EUC_JP, 51932)                                                                                           \
    ROW(VYNCS_EUC_CN, 51936)                                                                                           \
    ROW(VYNCS_EUC_KR, 51949)                                                                                           \
    ROW(VYNCS_EUC_TW, 51950)                                                                                           \
    ROW(VYNCS_UTF8, 65001)                                                                                             \
    ROW(VYNCS_UTF16, 1200)                                                                                             \
    ROW(VYNCS_UTF16BE, 1201)                                                                                           \
    ROW(VYNCS_UTF16ESC, 1202)                                                                                          \
    ROW(VYNCS_UTF32, 12000)                                                                                            \
    ROW(VYNCS_UTF32BE, 12001)                                                                                          \
    ROW(VYNCS_OS_DEFAULT, -2)

/// A character set, by its code-page number. `VYNCS_OS_DEFAULT` (-2) stands for the set of the process's locale,
/// decided once when the library is loaded, and is accepted wherever a set is. A set that has a name but no converter
/// (the ISO-2022 family, EUC-TW, the big-endian UTF-16 and UTF-32), and any unknown number, is converted as UTF-8.
enum VynCharSet : int {
/// @cond
#define VYN_CHARSET_ENUMERATOR(name, number) name = number,
    /// @endcond
    VYN_CHARSETS(VYN_CHARSET_ENUMERATOR)
#undef VYN_CHARSET_ENUMERATOR
};

/// The name of a set, e.g. "VYNCS_UTF8". A set without a name gives "VYNCS_OS_DEFAULT".
/// The text stays the library's and is valid until the library is unloaded. Any number of threads may ask at once.
VYNULIB_API char const* VynCharSetToString(VynCharSet cs);

/// The set of a name, compared exactly and case-sensitively; `VYNCS_OS_DEFAULT` for null, empty and unknown names.
/// Throws `std::bad_alloc` where memory runs out.
VYNULIB_API VynCharSet VynCharSetFromString(char const* name);

/// @name Conversion in one call
///
/// Contract common to these functions:
/// - `dstSize` is the whole size of `dst`, terminator included: in bytes for byte output, in units for UTF-16 output.
///   Output that does not fit is cut after the last whole character that fits; what is written is always terminated,
///   with `GetNullCharSize` zero bytes or one zero unit.
/// - A source ends at its terminator: a zero byte, a zero unit in UTF-16 (1200 as well as `unsigned short`), a zero
///   32-bit value in UTF-32 (12000).
/// - The result is the length written, terminator not counted. **Where it is 0, `dst` need not hold a text**: it is
///   untouched for null pointers, for sizes of 0 or less or without room for the terminator, for a source that decodes
///   to nothing, where `cs` and ISO 8859-1 both fail, and where memory runs out. An empty source leaves a terminator.
///   So test the result before `dst` is read:
///
///       if (LocalToUTF8(utf8, name, sizeof utf8, VYNCS_WCP932) != 0)
///           std::puts(reinterpret_cast<char const*>(utf8));
///
/// - Nothing is thrown. A character that can't be converted becomes U+FFFD on the way to Unicode, "?" or "U+XXXX" on the
///   way out, and nothing tells of it.
/// - Source and destination are the caller's and must not overlap. Any number of threads may call at once.
/// @{

/// Byte text in the set `cs` to UTF-8, at most `dstSize` bytes with the zero byte. Returns the bytes without it. A
/// source that is not wholly valid in `cs` is taken as ISO 8859-1 instead, so that no byte is lost. Every supplementary
/// character in a UTF-8 source counts as invalid here: convert UTF-8 with `UTF8ToUTF16` instead. Nothing is converted
/// from UTF-16 (1200), and of UTF-32 (12000) at most as many units as there are bytes before the first zero byte.
VYNULIB_API unsigned long LocalToUTF8(unsigned char* dst, char const* src, unsigned long dstSize, VynCharSet cs);

/// UTF-8 to byte text in the set `cs`, at most `dstSize` bytes with its terminator. Returns the bytes without it. What
/// the set lacks becomes "?"; invalid UTF-8 becomes U+FFFD before it is converted on, a stray continuation byte
/// nothing.
VYNULIB_API unsigned long UTF8ToLocal(char* dst, unsigned char const* src, unsigned long dstSize, VynCharSet cs);

/// Byte text in the set `cs` to UTF-16, at most `dstSize` units with the zero unit. Returns the units without it; as
/// `LocalToUTF8` in what is invalid and how it is then taken. What lies beyond the room of `dst` is not looked at.
VYNULIB_API unsigned long LocalToUTF16(unsigned short* dst, char const* src, int dstSize, VynCharSet cs);

/// UTF-16 to byte text in the set `cs`, at most `dstSize` bytes with its terminator. Returns the bytes without it. What
/// the set lacks becomes "?".
VYNULIB_API unsigned long UTF16ToLocal(char* dst, unsigned short const* src, unsigned long dstSize, VynCharSet cs);

/// UTF-8 to UTF-16, supplementary characters included: at most `dstSize` units with the zero unit. Returns the units
/// without it. A malformed sequence becomes U+FFFD, a stray continuation byte nothing.
VYNULIB_API unsigned long UTF8ToUTF16(unsigned short* dst, unsigned char const* src, unsigned long dstSize);

/// UTF-16 to UTF-8, at most `dstSize` bytes with the zero byte. Returns the bytes without it. A high surrogate without
/// its low one becomes "?"; a low one alone is written in three bytes.
VYNULIB_API unsigned long UTF16ToUTF8(unsigned char* dst, unsigned short const* src, unsigned long dstSize);

/// A file name in the default set to UTF-8, at most `dstSize` bytes with the zero byte. Returns the bytes without it. A
/// text "U+" with four upper-case hexadecimal digits becomes the UTF-16 unit of that value, which undoes what
/// `UTF8ToLocalPath` writes, and changes a name that held such a text from the beginning. Bytes that are no characters
/// of the set become U+FFFD: there is no fall-back to ISO 8859-1.
VYNULIB_API unsigned long LocalPathToUTF8(unsigned char* dst, char const* src, int dstSize);

/// UTF-8 to a file name in the default set, at most `dstSize` bytes with its terminator. Returns the bytes without it.
/// Every UTF-16 unit that the set can't hold is written as "U+" with four upper-case hexadecimal digits.
VYNULIB_API unsigned long UTF8ToLocalPath(char* dst, unsigned char const* src, int dstSize);
/// @}

/// The UTF-16 units that the terminated `src` becomes, its terminator not counted, as the converter of `cs` counts them
/// (`VynCharSetConverter::getNumUnits`). Null gives 0, and so does memory that runs out for the set's tables.
VYNULIB_API unsigned long GetNumUnits(char const* src, VynCharSet cs);

/// The bytes, terminator not counted, that the terminated UTF-16 `src` needs in `cs` when what can't be converted
/// becomes "?" (`VynCharSetConverter::getNumBytes`). Null gives 0, and so does memory that runs out for the set's tables.
VYNULIB_API unsigned long GetNumBytes(unsigned short const* src, VynCharSet cs);

/// Bytes of the shortest character of `cs`; of UTF-8 for a set that is not served. Any thread may ask.
VYNULIB_API unsigned int GetMinUnitSize(VynCharSet cs);

/// Bytes that one UTF-16 unit needs at most in `cs`, escapes apart; in UTF-8 for a set that is not served. Any thread
/// may ask.
VYNULIB_API unsigned int GetMaxUnitSize(VynCharSet cs);

/// Bytes of the terminator of `cs`, 1, 2 or 4; 1 for a set that is not served. Any thread may ask.
VYNULIB_API unsigned int GetNullCharSize(VynCharSet cs);

/// The units before the first zero unit of `s`, counted in 32 bits; 0 for null.
VYNULIB_API unsigned int VynCharSetWStrlen(unsigned short const* s);

/// Whether two zero-terminated UTF-16 texts are equal. Two null pointers are, a null pointer and a text never.
VYNULIB_API bool VynCharSetWStrEqual(unsigned short const* a, unsigned short const* b);
