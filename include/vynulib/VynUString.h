#pragma once

/// @file
/// The string of UTF-16 units.

#include <vynulib/VynBSTR.h>
#include <vynulib/VynCharSet.h>
#include <vynulib/VynPascalString.h>

#include <cstddef>
#include <iosfwd>
#include <string_view>
#include <type_traits>

class VynCharSetConverter;
class VynUStringList;

// How `VynUString` takes units that are not of the type `unsigned short`. Templates take exactly these types and no
// conversions to them, so that no call has more meanings for it.
namespace vyn {

static_assert(sizeof(char16_t) == sizeof(unsigned short));

template <class T>
constexpr bool isUnit = std::is_same_v<T, char16_t> || std::is_same_v<T, int>;
template <class T>
using IfUnit = std::enable_if_t<isUnit<T>, int>;
template <class T, class Count>
using IfUnitAndCount = std::enable_if_t<isUnit<T> && std::is_integral_v<Count>, int>;

template <class T>
constexpr bool isChar16Pointer = std::is_same_v<T, char16_t*> || std::is_same_v<T, char16_t const*>;
template <class... T>
using IfChar16Pointers = std::enable_if_t<(isChar16Pointer<T> && ...), int>;
template <class... T>
using IfAnyChar16Pointer = std::enable_if_t<(isChar16Pointer<T> || ...), int>;

inline unsigned short const* unitPointer(char16_t const* units) noexcept {
    return reinterpret_cast<unsigned short const*>(units);
}
inline unsigned short const* unitPointer(unsigned short const* units) noexcept {
    return units;
}
inline unsigned short const* unitPointer(std::nullptr_t) noexcept {
    return nullptr;
}

} // namespace vyn

/// A string of UTF-16 units in the machine's byte order, always followed by a zero unit.
///
///     VynUString name("caf\xC3\xA9", VYNCS_UTF8);
///     name.toUpper(false);
///     std::puts((name + u".txt").c_str(VYNCS_ISO_8859_1));
///
/// - A unit is an `unsigned short`, a `char16_t` or an `int`, of which the low 16 bits count: u'x', 0x3042. Only
///   `VynUString(97)`, an `int` alone, is digits, also where a string is made of it implicitly. A `char` is a byte of
///   text, but for `find` and `rfind`, which take it as a unit.
/// - Lengths, positions and counts are in 16-bit units, numbered from 0; a surrogate pair is two units. `npos` as a
///   count means "to the end", as a result "not found".
/// - Zero units may stand inside a text (a `VynBSTR` or two pointers bring them in). Comparisons, and conversions to
///   bytes, end at the first of them; everything else goes by the length.
/// - Up to 257 units live in the object itself; more take a heap array of exactly the size asked for. The capacity
///   never shrinks through editing.
/// - Byte text is converted by the converter of its character set; what can't be converted becomes U+FFFD on the way in
///   and "?" on the way out. Where a member takes no set, bytes are in `VYNCS_OS_DEFAULT`.
/// - `c_str` keeps the bytes it made with the string. Every operation that changes the text releases them, but for
///   `operator=(char)`, writing through `at`, and the storage operations.
/// - Null pointers and empty inputs are not errors: they make empty strings. Arguments may point into the string's own
///   text. A position that is an error throws `std::out_of_range` ("invalid string index given"), a length
///   `std::length_error` ("exceed maximum string length"), both before anything changes. Memory that runs out, also
///   that for the tables of a set at its first use, throws `std::bad_alloc` and leaves text and capacity as they were.
/// - One string must not be used by two threads at once, unless both only call const members.
class VYNULIB_API VynUString {
public:
    /// As a count: to the end or to the terminator. As a result: not found.
    static constexpr unsigned long npos = ~0UL;

    /// Which ends `trim` works on.
    enum TrimCmd : int { TRIM_LEADING = 1, TRIM_TRAILING = 2, TRIM_BOTH = TRIM_LEADING | TRIM_TRAILING };

    /// What `trim` removes.
    enum TrimTarget : int {
        TRIM_WHITESPACE = 0,                 ///< Units of the class white space (see `VynUChar`).
        TRIM_SPACE = 1,                      ///< U+0020 only.
        TRIM_WHITESPACE_AND_UNCLASSIFIED = 2 ///< White space and units without any class, such as most controls.
    };

    /// Where a string keeps its text and its cached byte text. Of interest only to the storage operations.
    struct Representation {
        unsigned int m_uHeap;        ///< 1: the text is a heap array of this string; 0: it is in the object.
        unsigned short* m_pText;     ///< The first unit.
        unsigned long m_ulLength;    ///< In units, terminator not counted.
        unsigned long m_ulCapacity;  ///< Units that fit beside the terminator.
        char* m_pSecText;            ///< What `c_str` made last, or null.
        unsigned long m_ulSecLength; ///< Bytes of it, terminator not counted; means nothing without it.
        VynCharSet m_eSecCharSet;    ///< The set of it; means nothing without it.
    };

    /// @name Construction
    /// A length beyond what fits in the object reserves exactly as many units as are counted before converting.
    /// @{
    VynUString() noexcept;               ///< Empty.
    VynUString(VynUString const& o);     ///< The units of `o`, zero units included, without its cached byte text.
    VynUString(VynUString&& o) noexcept; ///< Takes over heap array and cached byte text; `o` becomes empty.

    /// Up to `n` units of `o` from position `p`; empty where `p` is at or past the end.
    VynUString(VynUString const& o, unsigned long p, unsigned long n = npos);

    /// The text of one byte in `cs`. Empty where `c` is 0 or not a whole character of the set.
    VynUString(char c, VynCharSet cs = VYNCS_OS_DEFAULT);

    /// The text of `m` bytes `c` in `cs`; empty where `c` is 0.
    VynUString(char c, unsigned long m, VynCharSet cs = VYNCS_OS_DEFAULT);

    VynUString(unsigned short u); ///< One unit; empty where it is 0.
    /// One unit; empty where it is 0.
    VynUString(char16_t u) : VynUString(static_cast<unsigned short>(u)) {}

    VynUString(unsigned short u, unsigned long m); ///< `m` units `u`; empty where `u` is 0.

    /// `m` units `u`, a `char16_t` or the low 16 bits of an `int`; empty where `u` is 0.
    template <class Unit, class Count, vyn::IfUnitAndCount<Unit, Count> = 0>
    VynUString(Unit u, Count m) : VynUString(static_cast<unsigned short>(u), static_cast<unsigned long>(m)) {}

    VynUString(int i); ///< The decimal digits of `i`, after a '-' where it is negative.

    /// Byte text up to its terminator. As many units are converted as the set's converter counts characters
    /// (`VynCharSetConverter::getNumUnits`), hence none in `VYNCS_UTF16`: give UTF-16 as `unsigned short const*`.
    VynUString(char const* s, VynCharSet cs = VYNCS_OS_DEFAULT);

    /// As many units of byte text as there are characters in its first `len` bytes, or up to its terminator if that
    /// comes first. It must have one: where malformed bytes make no unit, reading goes on past `len`.
    VynUString(char const* s, unsigned long len, VynCharSet cs = VYNCS_OS_DEFAULT);

    VynUString(unsigned short const* s); ///< Up to the zero unit, less than 2^31 units.
    /// Up to the zero unit, less than 2^31 units. Null makes an empty string.
    VynUString(char16_t const* s) : VynUString(vyn::unitPointer(s)) {}

    VynUString(unsigned short const* s, unsigned long n); ///< `n` units, or fewer up to a zero unit; reserves `n`.
    /// `n` units, or fewer up to a zero unit; reserves `n`. Null makes an empty string.
    VynUString(char16_t const* s, unsigned long n) : VynUString(vyn::unitPointer(s), n) {}

    VynUString(unsigned short const* f, unsigned short const* l); ///< All units of `[f, l)`, zero units included.
    /// All units of `[f, l)`, zero units included.
    template <class First, class Last, vyn::IfChar16Pointers<First, Last> = 0>
    VynUString(First f, Last l) : VynUString(vyn::unitPointer(f), vyn::unitPointer(l)) {}

    VynUString(std::u16string_view s); ///< All its units, zero units included.

    /// The text of its bytes in `cs`, up to a zero byte. What can't be converted becomes U+FFFD.
    VynUString(VynPascalString const& p, VynCharSet cs = VYNCS_OS_DEFAULT);
    /// The text of its bytes in `cs`, up to a zero byte. What can't be converted becomes U+FFFD. Null makes an empty
    /// string.
    VynUString(VynPascalString const* p, VynCharSet cs = VYNCS_OS_DEFAULT);

    VynUString(VynBSTR const& b); ///< All its units, zero units included.
    VynUString(VynBSTR const* b); ///< All its units, zero units included. Null makes an empty string.
    /// @}

    /// Releases the heap array and the cached byte text.
    virtual ~VynUString();

    /// @name Assignment
    /// The capacity grows to what the new text needs and stays if it suffices. A null pointer or an empty text erases.
    /// @{
    VynUString& operator=(VynUString const& o);      ///< The units of `o`, zero units included. Of itself: nothing.
    VynUString& operator=(VynUString&& o) noexcept;  ///< Takes over heap array and cached byte text; `o` becomes empty.
    VynUString& operator=(VynPascalString const* p); ///< Its bytes in the default set, up to a zero byte. Null erases.
    VynUString& operator=(VynBSTR const& b);         ///< All its units, zero units included.
    VynUString& operator=(char const* s);            ///< Bytes in the default set, up to the zero byte. Null erases.
    VynUString& operator=(unsigned short const* s);  ///< Up to the zero unit. Null erases.
    /// Up to the zero unit. Null erases.
    VynUString& operator=(char16_t const* s) { return *this = vyn::unitPointer(s); }
    VynUString& operator=(std::u16string_view s); ///< All its units, zero units included.
    VynUString& operator=(unsigned short u);      ///< One unit; 0 erases.
    /// One unit, a `char16_t` or the low 16 bits of an `int`; 0 erases.
    template <class Unit, vyn::IfUnit<Unit> = 0>
    VynUString& operator=(Unit u) {
        return *this = static_cast<unsigned short>(u);
    }

    /// One byte in the default set; 0 erases. Keeps the cached byte text, so that `c_str` in the same set still gives
    /// the old one.
    VynUString& operator=(char c);

    /// Copies the text of `o` into storage that is set up anew: **a heap array that this string held is let go of, not
    /// released**. All else that replaces a text releases it, `operator=` for one. Of itself: nothing.
    VynUString& assign(VynUString const& o);

    /// Exchanges the texts. Both strings lose their cached byte text and get the capacity of a copy.
    VynUString& swap(VynUString& o);

    /// Makes the string empty and keeps the capacity.
    VynUString& erase();
    /// @}

    /// @name Access
    /// @{

    /// The units, the zero unit after them not counted; a surrogate pair is two.
    unsigned long length() const noexcept { return m_oRep.m_ulLength; }
    unsigned long capacity() const noexcept { return m_oRep.m_ulCapacity; } ///< Units that fit without a new array.
    bool empty() const noexcept { return m_oRep.m_ulLength == 0; }          ///< Whether there are no units.

    /// The units and the zero unit after them. Valid until the string is changed or destroyed.
    unsigned short const* data() const noexcept { return m_oRep.m_pText; }

    /// All units, zero units included. Valid until the string is changed or destroyed.
    std::u16string_view view() const noexcept {
        auto const* units = reinterpret_cast<char16_t const*>(m_oRep.m_pText);
        // They were written as another type: nothing may be read before what was written so far is in memory.
        __asm__ volatile("" : "+r"(units) : : "memory");
        return std::u16string_view(units, length());
    }

    /// The unit at `i`. Throws `std::out_of_range` for `i` at or past the end. Writing keeps the cached byte text, so
    /// that `c_str` in the same set still gives the old one.
    unsigned short& at(unsigned long i);
    unsigned short const& at(unsigned long i) const; ///< The unit at `i`. Throws for `i` at or past the end.

    /// The `i`-th code point, in the cached byte text of `VYNCS_UTF32`: writing to it does not change the string.
    /// Throws for `i` at or past `numChars`. Valid as long as what `c_str` returns.
    unsigned int& at_utf32(unsigned long i);

    /// The code points; a surrogate pair is one.
    unsigned long numChars() const;
    /// @}

    /// @name Conversion to bytes
    /// @{

    /// The bytes that the text needs in `cs`, up to its first zero unit and terminator not counted, where each
    /// character that the set lacks becomes "?".
    unsigned long length(VynCharSet cs) const;

    /// The text in `cs` up to its first zero unit, "?" for what the set lacks, with that set's terminator. The bytes
    /// are the string's: they stay valid until the text is changed, `c_str` is called with another set or the string is
    /// destroyed. A second call with the same set converts nothing. Where memory runs out, the bytes of before are
    /// gone.
    char const* c_str(VynCharSet cs = VYNCS_OS_DEFAULT);

    /// Writes at most `size` bytes of the text in `cs`, no character in part, and the set's terminator after them:
    /// **`dst` needs room for `size` and the terminator** (`GetNullCharSize`). Returns the bytes, terminator not
    /// counted. With null `dst`, `size` 0 or **an empty string**, `dst` stays as it is, without a terminator: 0.
    unsigned long copy(char* dst, unsigned long size, VynCharSet cs = VYNCS_OS_DEFAULT) const;

    /// Copies at most `size` units and no terminator. Returns the units; null `dst` gives 0.
    unsigned long copy(unsigned short* dst, unsigned long size) const;
    /// Copies at most `size` units and no terminator. Returns the units; null `dst` gives 0.
    unsigned long copy(char16_t* dst, unsigned long size) const {
        return copy(reinterpret_cast<unsigned short*>(dst), size);
    }

    /// Writes as many whole characters in `cs` as take 255 bytes, and no terminator. Returns the bytes; null `dst`
    /// gives 0. Of an empty string only the length is written.
    unsigned long copy(VynPascalString* dst, VynCharSet cs = VYNCS_OS_DEFAULT) const;

    /// Writes `length() % 65536` units, at most `max`, and no terminator. Returns the units; null `dst` gives 0.
    unsigned long copy(VynBSTR* dst, unsigned long max = npos) const;
    /// @}

    /// @name Editing
    /// @{

    /// Removes the units that `target` says from the ends that `cmd` says. The capacity stays. Returns this string.
    VynUString& trim(TrimCmd cmd, TrimTarget target);

    /// Cuts to `n` units or fills up to them with the text of bytes `c`; where that makes fewer units, a zero unit
    /// follows, and what the storage held before. **Beyond the capacity the old text is lost**: all is fill then.
    void resize(unsigned long n, char c, VynCharSet cs = VYNCS_OS_DEFAULT);

    /// Cuts to `n` units or fills up to them with `u`. **Beyond the capacity the old text is lost**: all is fill then.
    void resize(unsigned long n, unsigned short u);
    /// Cuts to `n` units or fills up to them with `u`. **Beyond the capacity the old text is lost**: all is fill then.
    template <class Unit, vyn::IfUnit<Unit> = 0>
    void resize(unsigned long n, Unit u) {
        resize(n, static_cast<unsigned short>(u));
    }

    VynUString left(unsigned long n) const; ///< The first `n` units; throws where there are fewer.

    /// `n` units from `p`; throws where there are fewer. To the end with `npos`, where `p` may be anything.
    VynUString mid(unsigned long p, unsigned long n = npos) const;

    /// Replaces up to `n` units from `p` by up to `k` units of `s` from `q`. Throws for `p` or `q` past the end.
    VynUString& replace(unsigned long p, unsigned long n, VynUString const& s, unsigned long q, unsigned long k = npos);

    /// Replaces `[f, l)` of this string's own text by `s`. Throws for a pointer outside it. `f` after `l` means
    /// everything from `f` on.
    VynUString& replace(unsigned short const* f, unsigned short const* l, VynUString const& s);
    /// Replaces `[f, l)` of this string's own text by `s`. Throws for a pointer outside it. `f` after `l` means
    /// everything from `f` on.
    template <class First, class Last, vyn::IfChar16Pointers<First, Last> = 0>
    VynUString& replace(First f, Last l, VynUString const& s) {
        return replace(vyn::unitPointer(f), vyn::unitPointer(l), s);
    }

    /// Removes up to `n` units from `p`. Throws for `p` past the end, but never for an empty string.
    VynUString& erase(unsigned long p, unsigned long n = npos);
    /// @}

    /// @name Concatenation
    /// A new string of both texts. More operators with something else on the left follow the class.
    /// @{
    VynUString operator+(char c) const; ///< With the text of one byte in the default set; nothing where it is 0.
    VynUString operator+(unsigned short u) const; ///< With one unit; nothing where it is 0.
    /// With one unit, a `char16_t` or the low 16 bits of an `int`; nothing where it is 0.
    template <class Unit, vyn::IfUnit<Unit> = 0>
    VynUString operator+(Unit u) const {
        return *this + static_cast<unsigned short>(u);
    }
    VynUString operator+(char const* s) const;           ///< With bytes in the default set, up to the zero byte.
    VynUString operator+(unsigned short const* s) const; ///< With units up to the zero unit.
    VynUString operator+(VynUString const& s) const;     ///< With all units of `s`, zero units included.

    /// One unit, a `char16_t` or the low 16 bits of an `int`, and the units of `s`.
    template <class Unit, vyn::IfUnit<Unit> = 0>
    friend VynUString operator+(Unit u, VynUString const& s) {
        return VynUString(static_cast<unsigned short>(u)) + s;
    }
    /// Units up to the zero unit, and the units of `s`.
    friend VynUString operator+(char16_t const* left, VynUString const& s) { return VynUString(left) + s; }
    /// All units of `left`, zero units included, and the units of `s`.
    friend VynUString operator+(std::u16string_view left, VynUString const& s) { return VynUString(left) + s; }
    /// @}

    /// @name Case
    /// In place and unit by unit, so that the length stays: U+00DF has no upper case, surrogate pairs have none at all.
    /// @{
    void toUpper(bool asciiOnly); ///< To upper case, only a to z where `asciiOnly`. Throws `std::bad_alloc`.
    void toLower(bool asciiOnly); ///< To lower case, only A to Z where `asciiOnly`. Throws `std::bad_alloc`.
    /// @}

    /// @name Comparison
    /// At most `n` units, up to the first zero unit: -1, 0 or 1 as the first text sorts before, with or after the
    /// second. The order is that of the unit values (so surrogate pairs sort below U+E000); the forms without case
    /// compare each differing unit in its upper case. A null text sorts before any other. More operators follow the
    /// class.
    /// @{

    /// -1, 0 or 1 as `a` sorts before, with or after `b`, by at most `n` units, up to the first zero unit. This string
    /// does not count.
    int canonicalCompare(unsigned short const* a, unsigned short const* b, unsigned long n = npos) const;
    /// As `canonicalCompare`, each differing unit in its upper case.
    int canonicalCompareNoCase(unsigned short const* a, unsigned short const* b, unsigned long n = npos) const;
    /// -1, 0 or 1 as this text sorts before, with or after `other`, by at most `n` units, up to the first zero unit.
    int compare(VynUString const& other, unsigned long n = npos) const;
    /// As `compare`, each differing unit in its upper case.
    int compareNoCase(VynUString const& other, unsigned long n = npos) const;
    /// -1, 0 or 1 as `a` sorts before, with or after `b`, by at most `n` units, up to the first zero unit.
    template <class A, class B, vyn::IfAnyChar16Pointer<A, B> = 0>
    int canonicalCompare(A a, B b, unsigned long n = npos) const {
        return canonicalCompare(vyn::unitPointer(a), vyn::unitPointer(b), n);
    }
    /// As `canonicalCompare`, each differing unit in its upper case.
    template <class A, class B, vyn::IfAnyChar16Pointer<A, B> = 0>
    int canonicalCompareNoCase(A a, B b, unsigned long n = npos) const {
        return canonicalCompareNoCase(vyn::unitPointer(a), vyn::unitPointer(b), n);
    }

    bool operator<(VynUString const& other) const; ///< As `compare` decides.
    /// As `compare` decides.
    friend bool operator>(VynUString const& a, VynUString const& b) { return b < a; }
    /// As `compare` decides.
    friend bool operator<=(VynUString const& a, VynUString const& b) { return !(b < a); }
    /// As `compare` decides.
    friend bool operator>=(VynUString const& a, VynUString const& b) { return !(a < b); }
    /// As `compare` decides; `a` ends at its zero unit.
    friend bool operator<(char16_t const* a, VynUString const& b) { return VynUString(a) < b; }
    /// As `compare` decides.
    friend bool operator<(std::u16string_view a, VynUString const& b) { return VynUString(a) < b; }
    /// @}

    /// @name Search
    /// Positions of the result; `npos` where nothing is found.
    /// @{

    /// The position of the first unit `c` at `pos` or after it, `npos` where there is none. A zero unit is never found.
    unsigned long find(unsigned short c, unsigned long pos = 0) const;

    /// The position of the last unit `c` at `pos` or before it, `npos` where there is none. **For `pos` at or past the
    /// end, and for a zero unit, this is always `length() - 1`**, whatever stands there: to search the whole string,
    /// start from that position.
    unsigned long rfind(unsigned short c, unsigned long pos = npos) const;

    /// Where the first occurrence of `s` begins, at `pos` or after it; `npos` where there is none. An empty `s` is
    /// never found. A zero unit in `s` after its first unit must be met as well, but what follows it in `s` counts for
    /// nothing beyond its length.
    unsigned long find(VynUString const& s, unsigned long pos = 0) const;

    /// Where the last occurrence of `s` begins, at `pos` or before it; `npos` where there is none. Otherwise as `find`.
    unsigned long rfind(VynUString const& s, unsigned long pos = npos) const;
    /// @}

    /// @name Splitting
    /// The fields between separators, as the constructors of `VynUStringList` make them: consecutive separators give
    /// empty fields, one at the end gives none after it. A zero or empty separator gives one field, the whole text.
    /// Callers include <vynulib/VynUStringList.h>.
    /// @{
    VynUStringList split(unsigned short separator) const; ///< At each unit `separator`; 0 gives one field.
    /// At each unit `separator`, a `char16_t` or the low 16 bits of an `int`; 0 gives one field.
    template <class Unit, vyn::IfUnit<Unit> = 0>
    VynUStringList split(Unit separator) const;
    /// At each occurrence of `separator`; an empty one gives one field.
    VynUStringList split(VynUString const& separator) const;
    /// At each occurrence of the text of one byte in `cs`; one field where it is no whole character.
    VynUStringList split(char separator, VynCharSet cs = VYNCS_OS_DEFAULT) const;
    /// @}

    /// @name Storage
    /// The first three release nothing: they are for a string that holds neither a heap array nor a cached byte text.
    /// @{
    Representation* SetupSpace(); ///< Makes the string empty and inline. Returns its representation.
    Representation*
    SetupSpace(unsigned long n); ///< The same, then makes room for `n` units; stays empty if that fails.
    void initForAlloc();         ///< `SetupSpace()`, and notes the result as this string's own.

    /// Makes room for `n` units: nothing if they fit already, otherwise **the old text is discarded** and the capacity
    /// becomes exactly `n`. Throws `std::bad_alloc` (`std::bad_array_new_length` where `n` is too large for any array).
    void AssureSpace(unsigned long n);
    /// As `AssureSpace`.
    void assureSize(unsigned long n) { AssureSpace(n); }

    void freeSecText(); ///< Releases the cached byte text.
    /// @}

private:
    static constexpr unsigned long inlineCapacity = 257;
    static constexpr unsigned long maxLength = npos - 1;

    [[noreturn]] static void range_error();
    [[noreturn]] static void length_error();

    class Draft; // what all writers write through

    void convert(VynCharSetConverter& converter, void const* bytes, unsigned long byteCount, int maxSrc);
    void convertUnterminated(char const* bytes, unsigned long byteCount, VynCharSet cs, int maxSrc);
    bool cutOrGrow(unsigned long n);

    Representation* m_pRep; // always &m_oRep
    Representation m_oRep;
    unsigned short m_aInline[inlineCapacity + 1];
    unsigned int m_uInlineWritten = 0; // leading units of m_aInline that were ever written: no others may be shown
};

/// @name Concatenation with something else on the left
/// @{

/// The text of one byte in the default set, and the units of `s`.
VYNULIB_API VynUString operator+(char c, VynUString const& s);
/// One unit, and the units of `s`.
VYNULIB_API VynUString operator+(unsigned short u, VynUString const& s);
/// Bytes in the default set up to the zero byte, and the units of `s`.
VYNULIB_API VynUString operator+(char const* left, VynUString const& s);
/// Units up to the zero unit, and the units of `s`.
VYNULIB_API VynUString operator+(unsigned short const* left, VynUString const& s);
/// @}

/// @name Comparison operators
/// As `VynUString::compare` decides; a null pointer is an empty string.
/// @{

/// As `VynUString::compare` decides.
VYNULIB_API bool operator==(VynUString const& a, VynUString const& b);
/// As `VynUString::compare` decides.
VYNULIB_API bool operator!=(VynUString const& a, VynUString const& b);

/// As `VynUString::compare` decides. `a` are bytes in the default set, up to the zero byte.
VYNULIB_API bool operator==(char const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are bytes in the default set, up to the zero byte.
VYNULIB_API bool operator!=(char const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are bytes in the default set, up to the zero byte.
VYNULIB_API bool operator<(char const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are bytes in the default set, up to the zero byte.
VYNULIB_API bool operator>(char const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are bytes in the default set, up to the zero byte.
VYNULIB_API bool operator<=(char const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are bytes in the default set, up to the zero byte.
VYNULIB_API bool operator>=(char const* a, VynUString const& b);

/// As `VynUString::compare` decides. `a` are units up to the zero unit.
VYNULIB_API bool operator==(unsigned short const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are units up to the zero unit.
VYNULIB_API bool operator!=(unsigned short const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are units up to the zero unit.
VYNULIB_API bool operator<(unsigned short const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are units up to the zero unit.
VYNULIB_API bool operator>(unsigned short const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are units up to the zero unit.
VYNULIB_API bool operator<=(unsigned short const* a, VynUString const& b);
/// As `VynUString::compare` decides. `a` are units up to the zero unit.
VYNULIB_API bool operator>=(unsigned short const* a, VynUString const& b);
/// @}

/// @name Streams
/// Bytes are in `VYNCS_OS_DEFAULT`. The readers empty the string first, report only through the stream's state, reset
/// its width to 0 and read at most width - 1 bytes where the width is not 0. They flush a tied stream and then try to
/// read whatever the stream's state is. A byte 0xFF ends the input as its end does; where no byte was stored, failbit
/// is set. What the stream's buffer throws counts as failure and is not passed on.
/// @{

/// Inserts the text up to its first zero unit; width and fill apply.
VYNULIB_API std::ostream& operator<<(std::ostream& out, VynUString const& s);

/// Skips white space and reads a word up to the next white space, which stays in the stream.
VYNULIB_API std::istream& operator>>(std::istream& in, VynUString& s);

/// Reads up to `delimiter`, which is taken from the stream and not stored. An empty line sets failbit.
VYNULIB_API std::istream& getline(std::istream& in, VynUString& s, char delimiter);

/// Reads up to a carriage return (not: line feed).
VYNULIB_API std::istream& getline(std::istream& in, VynUString& s);
/// @}
