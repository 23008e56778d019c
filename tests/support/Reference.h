#pragma once

#include "tables/Tables.h"
#include "tests/support/ConvertKit.h"

#include <cstdint>
#include <iterator>
#include <string_view>

/// The ways in which a set makes characters.
enum class Form { SingleByte, DoubleByte, DoubleByteEx, EucCnKr, EucJp, GB18030, Utf8, Utf16, Utf16Esc, Utf32 };

struct ReferenceSet {
    VynCharSet cs;
    unsigned short const* map; ///< Null in `DoubleByteEx`, which has a map of another type, and in the Unicode sets.
    unsigned codes;            ///< In the map.
    Form form = Form::SingleByte;
    unsigned char const* types = nullptr;
};

inline constexpr ReferenceSet singleByteSets[] = {
    {VYNCS_WCP874, oCP874map, 218},        {VYNCS_WCP1250, oCP1250map, 255},      {VYNCS_WCP1251, oCP1251map, 255},
    {VYNCS_WCP1252, oCP1252map, 255},      {VYNCS_WCP1253, oCP1253map, 253},      {VYNCS_WCP1254, oCP1254map, 255},
    {VYNCS_WCP1255, oCP1255map, 244},      {VYNCS_WCP1256, oCP1256map, 255},      {VYNCS_WCP1257, oCP1257map, 253},
    {VYNCS_WCP1258, oCP1258map, 255},      {VYNCS_KOI8R, oKOI8Rmap, 255},         {VYNCS_ISO_8859_1, o8859_1map, 255},
    {VYNCS_ISO_8859_2, o8859_2map, 255},   {VYNCS_ISO_8859_3, o8859_3map, 248},   {VYNCS_ISO_8859_4, o8859_4map, 255},
    {VYNCS_ISO_8859_5, o8859_5map, 255},   {VYNCS_ISO_8859_6, o8859_6map, 210},   {VYNCS_ISO_8859_7, o8859_7map, 252},
    {VYNCS_ISO_8859_8, o8859_8map, 219},   {VYNCS_ISO_8859_9, o8859_9map, 255},   {VYNCS_ISO_8859_10, o8859_10map, 255},
    {VYNCS_ISO_8859_11, o8859_11map, 247}, {VYNCS_ISO_8859_13, o8859_13map, 255}, {VYNCS_ISO_8859_14, o8859_14map, 255},
    {VYNCS_ISO_8859_15, o8859_15map, 255}, {VYNCS_ISO_8859_16, o8859_16map, 255},
};
inline constexpr ReferenceSet multibyteSets[] = {
    {VYNCS_WCP932, oCP932map, 9338, Form::DoubleByte, oCP932Type},
    {VYNCS_WCP936, oCP936map, 24069, Form::DoubleByte, oCP936Type},
    {VYNCS_WCP949, oCP949map, 17365, Form::DoubleByte, oCP949Type},
    {VYNCS_WCP950, oCP950map, 20202, Form::DoubleByte, oCP950Type},
    {VYNCS_SHIFTJIS, oSHIFTJISmap, 9396, Form::DoubleByte, oCP932Type},
    {VYNCS_BIG5, oBIG5map, 19839, Form::DoubleByte, oBig5Type},
    {VYNCS_SJIS0213, nullptr, 11398, Form::DoubleByteEx, oCP932Type},
    {VYNCS_EUC_CN, oGB2312map, 7445, Form::EucCnKr},
    {VYNCS_EUC_KR, oKSX1001map, 8224, Form::EucCnKr},
    {VYNCS_EUC_JP, oJIS0208map, 6879, Form::EucJp},
    {VYNCS_GB18030, oGBKmap, 24067, Form::GB18030},
};
inline constexpr ReferenceSet unicodeSets[] = {
    {VYNCS_UTF8, nullptr, 0, Form::Utf8},
    {VYNCS_UTF16, nullptr, 0, Form::Utf16},
    {VYNCS_UTF16ESC, nullptr, 0, Form::Utf16Esc},
    {VYNCS_UTF32, nullptr, 0, Form::Utf32},
};

inline std::vector<ReferenceSet> tableSets() {
    std::vector<ReferenceSet> sets(std::begin(singleByteSets), std::end(singleByteSets));
    sets.insert(sets.end(), std::begin(multibyteSets), std::end(multibyteSets));
    return sets;
}
inline std::vector<ReferenceSet> allSets() {
    std::vector<ReferenceSet> sets = tableSets();
    sets.insert(sets.end(), std::begin(unicodeSets), std::end(unicodeSets));
    return sets;
}

/// The rules of every set in their plainest form, as what the converters are compared with. Its elements are bytes, or
/// the 16 or 32 bits of a value.
class Reference {
public:
    struct Character {
        unsigned value;
        unsigned elements; ///< Of the source that it takes, also where it is replaced.
        unsigned units;    ///< That it becomes, also where it is replaced.
        bool mapped = true;
        bool limited = true; ///< Whether the source limit is tested after it.
    };
    struct Code {
        std::uint64_t code; ///< One element, or bytes with the last one lowest.
        unsigned elements;  ///< 0: can't be converted.
        unsigned units;     ///< Of the source that it takes, also where it is replaced.
        bool ends = false;  ///< Whether the text ends here without a word.
    };

    explicit Reference(ReferenceSet const& set) : m_set(set) {
        for (auto const* record = set.map; record && record[0] != 0; record += 2)
            enter(record[0], record[1], set.form == Form::EucCnKr || set.form == Form::EucJp ? 0x8080 : 0);
        if (set.form == Form::DoubleByteEx)
            for (sMBCSExTable const* record = oSJIS0213_2004map; record->code != 0; ++record)
                enter(record->code, record->unicode, 0);
        if (set.form == Form::EucJp)
            for (auto const* record = oJIS0201map; record[0] != 0; record += 2)
                enter(record[0], record[1], record[0] > 0xA0 ? 0x8E00 : 0x8080);
        if (set.form == Form::GB18030)
            enterRanges();
    }

    /// At least five zero elements stand after the text.
    Character decodeOne(unsigned const* at) const {
        unsigned const lead = at[0], trail = at[1];
        switch (m_set.form) {
        case Form::SingleByte:
            return lookedUp(m_values[lead], 1);
        case Form::DoubleByte:
        case Form::DoubleByteEx:
            if ((m_set.types[lead] & 0x40) == 0)
                return lookedUp(m_values[lead], 1);
            return (m_set.types[trail] & 0x80) != 0 ? lookedUp(m_values[lead << 8 | trail], 2) : none(1, false);
        case Form::EucCnKr:
            if (lead < 0x7F)
                return scalar(lead, 1);
            if (lead < 0xA1 || lead > 0xFE || trail < 0xA1 || trail > 0xFE)
                return none(1);
            return lookedUp(m_values[(lead & 0x7F) << 8 | (trail & 0x7F)], 2);
        case Form::EucJp: {
            unsigned value = lead == 0x8F ? 0 : m_values[(lead & 0x7F) << 8 | (trail & 0x7F)];
            if (lead == 0x8E)
                value = trail >= 0xA1 && trail <= 0xDF ? m_values[trail] : 0;
            return lead < 0x7F ? scalar(lead, 1) : lookedUp(value, value != 0 ? 2 : 1);
        }
        case Form::GB18030:
            return decodeGb18030(at);
        case Form::Utf8:
            return decodeUtf8(at);
        case Form::Utf16Esc: {
            unsigned unit = 0, digits = 0;
            if (lead == 'U' && trail == '+')
                while (digits < 4 && hexDigits.find(static_cast<char>(at[2 + digits])) != hexDigits.npos)
                    unit = unit * 16 + static_cast<unsigned>(hexDigits.find(static_cast<char>(at[2 + digits++])));
            return digits == 4 ? scalar(unit, 6) : scalar(lead < 0x80 ? lead : 0xFF00 | lead, 1);
        }
        default:
            return scalar(lead, 1);
        }
    }

    /// A zero unit stands after the text.
    Code encodeOne(unsigned short const* at) const {
        Form const form = m_set.form;
        unsigned value = at[0], units = 1;
        if (takesPairs() && isHigh(at[0])) {
            if ((at[1] & 0xFC00) != 0xDC00)
                return {0, 0, 1, form == Form::GB18030};
            value = 0x10000 + (at[0] - 0xD800U) * 0x400 + (at[1] - 0xDC00U);
            units = 2;
        }
        bool const euc = form == Form::EucCnKr || form == Form::EucJp;
        if (form == Form::Utf16 || form == Form::Utf32 || (euc && value < 0x7F) ||
            (form == Form::Utf16Esc && value < 0x80))
            return {value, 1, units};
        if (form == Form::Utf16Esc)
            return {escapeOf(value), 6, 1};
        if (form == Form::Utf8)
            return encodeUtf8(value, units);
        unsigned const supplementary = value - 0x10000 + supplementaryIndex;
        unsigned const code = form == Form::GB18030 && units == 2 ? fourBytes(supplementary) : m_codes[value];
        return {code, code > 0xFFFFFF ? 4U : code > 0xFF ? 2U : code != 0 ? 1U : 0U, units};
    }

    Converted<unsigned short> const& decode(Bytes const& source, unsigned long room, Call const& call) {
        readElements(source);
        Units& out = m_decoded.output;
        out.clear();
        m_decoded.illegal = false;
        Form const form = m_set.form;
        bool const stops = call.op == ILLCHAR_STOP && form != Form::Utf8;
        bool const needsLimit = form == Form::SingleByte || form == Form::Utf16 || form == Form::Utf32;
        bool const readsNothing = (call.maxSrc == 0 && needsLimit) || (call.maxSrc < 0 && form == Form::Utf16);
        for (unsigned long at = 0; out.size() < room && m_elements[at] != 0 && !readsNothing;) {
            Character found = decodeOne(&m_elements[at]);
            if (found.units > room - out.size()) {
                if (form != Form::Utf8)
                    break;
                found = none(1);
            }
            m_decoded.illegal |= !found.mapped;
            if (!found.mapped && stops)
                break;
            if (found.units == 2)
                out.push_back(static_cast<unsigned short>(0xD800 + (found.value - 0x10000) / 0x400));
            if (found.units != 0)
                out.push_back(
                    static_cast<unsigned short>(found.units == 2 ? 0xDC00 + found.value % 0x400 : found.value));
            at += found.elements;
            if (call.maxSrc > 0 && found.limited && at >= static_cast<unsigned long>(call.maxSrc))
                break;
        }
        m_decoded.illegal &= call.withFlag;
        return m_decoded;
    }

    /// Not for escapes in UTF-8, which leave the room.
    Converted<unsigned char> const& encode(Units const& source, unsigned long room, Call const& call) {
        m_units = source;
        m_units.resize(source.size() + 2);
        Bytes& out = m_encoded.output;
        out.clear();
        m_encoded.illegal = false;
        unsigned short const* at = m_units.data();
        for (unsigned long left = room / elementSize(); left != 0 && *at != 0;) {
            Code const found = encodeOne(at);
            bool const mapped = found.elements != 0, escapes = !mapped && call.op == ILLCHAR_ESCAPE;
            if (found.ends)
                break;
            m_encoded.illegal |= !mapped;
            unsigned long const length = mapped ? found.elements : escapes ? 6 * found.units : 1;
            if (length > left || (!mapped && call.op == ILLCHAR_STOP))
                break;
            for (unsigned i = 0; escapes && i < found.units; ++i)
                append(escapeOf(at[i]), 6);
            if (!escapes)
                append(mapped ? found.code : '?', mapped ? found.elements : 1);
            left -= length;
            at += found.units;
        }
        m_encoded.illegal &= call.withFlag;
        return m_encoded;
    }

    /// The units that the bytes decode to with room for all. EUC-JP and UTF-8 end where the bytes left can't hold the
    /// sequence that a byte begins, and UTF-8 does not look at them. A value of UTF-32 counts one.
    unsigned long countUnits(Bytes const& source) {
        readElements(source);
        unsigned long units = 0;
        for (unsigned long at = 0, left = source.size() / elementSize(); left != 0 && m_elements[at] != 0;) {
            unsigned const lead = m_elements[at];
            Character found = decodeOne(&m_elements[at]);
            unsigned needed = 1;
            if (m_set.form == Form::EucJp && lead >= 0x7F)
                needed = lead == 0x8F ? 3 : 2;
            if (m_set.form == Form::Utf8) {
                needed = lead < 0x80 ? 1 : lead < 0xC0 ? ~0U : 2 + (lead >= 0xE0) + (lead >= 0xF0);
                found = {0, needed, needed == 4 ? 2U : 1U};
            }
            if (needed > left)
                break;
            units += m_set.form == Form::Utf32 ? 1 : found.units;
            at += found.elements;
            left -= std::min<unsigned long>(left, found.elements);
        }
        return units;
    }

    /// The bytes that the units encode to with room for all. Where pairs are looked for, a high surrogate at the end is
    /// not counted.
    unsigned long countBytes(Units const& source) {
        Units counted = source;
        if (takesPairs() && !source.empty() && isHigh(source.back()))
            counted.pop_back();
        return encode(counted, 24 * source.size(), {}).output.size();
    }

    /// The four bytes of a linear position in GB18030.
    static constexpr unsigned fourBytes(unsigned index) {
        return (index / 12600 + 0x81) << 24 | (index / 1260 % 10 + 0x30) << 16 | (index / 10 % 126 + 0x81) << 8 |
               (index % 10 + 0x30);
    }

    static constexpr unsigned supplementaryIndex = 189000; // of U+10000

private:
    static constexpr std::string_view hexDigits = "0123456789ABCDEF";

    static Character scalar(unsigned value, unsigned elements) { return {value, elements, value > 0xFFFF ? 2U : 1U}; }
    static Character none(unsigned elements, bool limited = true) { return {0xFFFD, elements, 1, false, limited}; }
    static Character lookedUp(unsigned value, unsigned elements, bool limitedWithout = true) {
        return value != 0 ? scalar(value, elements) : none(elements, limitedWithout);
    }

    static bool isDigit(unsigned byte) { return byte >= 0x30 && byte <= 0x39; }
    static bool isHigh(unsigned unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

    bool takesPairs() const {
        return m_set.form == Form::DoubleByteEx || m_set.form == Form::GB18030 || m_set.form == Form::Utf8 ||
               m_set.form == Form::Utf32;
    }
    unsigned elementSize() const { return m_set.form == Form::Utf32 ? 4 : m_set.form == Form::Utf16 ? 2 : 1; }

    Character decodeGb18030(unsigned const* at) const {
        unsigned const lead = at[0], trail = at[1];
        if (lead < 0x81 || lead == 0xFF)
            return lookedUp(m_values[lead], 1);
        if (trail >= 0x40 && trail != 0x7F && trail != 0xFF)
            return lookedUp(m_values[lead << 8 | trail], 2, false);
        if (!isDigit(trail) || at[2] < 0x81 || at[2] == 0xFF || !isDigit(at[3]))
            return none(1, false);
        unsigned const index = ((lead - 0x81) * 10 + trail - 0x30) * 1260 + (at[2] - 0x81U) * 10 + at[3] - 0x30U;
        if (index < supplementaryIndex)
            return lookedUp(m_fourByteValues[index], 4, false);
        unsigned const value = index - supplementaryIndex + 0x10000;
        return value <= 0x10FFFF ? scalar(value, 4) : none(4);
    }

    /// Only the form of a sequence is tested. A pair takes its first byte only, a stray byte leaves but the flag.
    static Character decodeUtf8(unsigned const* at) {
        unsigned const lead = at[0];
        if (lead < 0x80)
            return scalar(lead, 1);
        if (lead < 0xC0)
            return {0, 1, 0, false};
        unsigned const trails = 1 + (lead >= 0xE0) + (lead >= 0xF0);
        unsigned value = lead & (trails == 1 ? 0x1F : 0x0F);
        for (unsigned i = 1; i <= trails; ++i) {
            if ((at[i] & 0xC0) != 0x80)
                return none(1);
            value = value << 6 | (at[i] & 0x3F);
        }
        return trails == 3 ? Character{value, 1, 2} : Character{value, trails + 1, 1};
    }

    static Code encodeUtf8(unsigned value, unsigned units) {
        if (value < 0x80)
            return {value, 1, units};
        unsigned const trails = 1 + (value >= 0x800) + (value >= 0x10000);
        std::uint64_t code = (0x7F80 >> trails & 0xFF) | value >> 6 * trails;
        for (unsigned shift = 6 * trails; shift != 0; shift -= 6)
            code = code << 8 | 0x80 | (value >> (shift - 6) & 0x3F);
        return {code, trails + 1, units};
    }

    static std::uint64_t escapeOf(unsigned unit) {
        std::uint64_t code = 'U' << 8 | '+';
        for (unsigned shift = 16; shift != 0; shift -= 4)
            code = code << 8 | static_cast<unsigned char>(hexDigits[unit >> (shift - 4) & 0xF]);
        return code;
    }

    void append(std::uint64_t code, unsigned elements) {
        for (unsigned i = elements; i-- != 0;) {
            std::uint64_t const element = elements == 1 ? code : code >> 8 * i & 0xFF;
            for (unsigned byte = 0; byte < elementSize(); ++byte)
                m_encoded.output.push_back(static_cast<unsigned char>(element >> 8 * byte));
        }
    }

    void readElements(Bytes const& source) {
        m_elements.assign(source.size() / elementSize(), 0);
        for (std::size_t i = 0; i < m_elements.size() * elementSize(); ++i)
            m_elements[i / elementSize()] |= unsigned{source[i]} << 8 * (i % elementSize());
        m_elements.resize(m_elements.size() + 6);
    }

    void enter(unsigned key, unsigned value, unsigned highBits) {
        m_values[key] = value;
        m_codes[value] = (key + highBits) & 0xFFFF;
    }

    /// Ranges count where the map has nothing. Keys from 0x10000 on are linear positions.
    void enterRanges() {
        for (sGB18030Range const* range = oGB2UniRange; range->first != 0; ++range)
            for (unsigned key = range->first; key <= range->last; ++key) {
                unsigned& value = key < 0x10000 ? m_values[key] : m_fourByteValues[key - 0x10000];
                value = value != 0 ? value : range->target + key - range->first;
            }
        for (sGB18030Range const* range = oUni2GBRange; range->first != 0; ++range)
            for (unsigned unit = range->first; unit <= range->last; ++unit) {
                unsigned const key = range->target + unit - range->first;
                if (m_codes[unit] == 0)
                    m_codes[unit] = key < 0x10000 ? key : fourBytes(key - 0x10000);
            }
    }

    ReferenceSet m_set;
    std::vector<unsigned> m_values = std::vector<unsigned>(0x10000);
    std::vector<unsigned> m_codes = std::vector<unsigned>(0x110000);
    std::vector<unsigned> m_fourByteValues = std::vector<unsigned>(supplementaryIndex);
    std::vector<unsigned> m_elements;
    Units m_units;
    Converted<unsigned short> m_decoded;
    Converted<unsigned char> m_encoded;
};
