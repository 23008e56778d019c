#pragma once

#include "tables/Tables.h"
#include "tests/support/ConvertKit.h"

#include <cstring>
#include <iterator>

/// The ways in which bytes make the characters of a table set.
enum class Form { SingleByte, DoubleByte, DoubleByteEx, EucCnKr, EucJp, GB18030 };

struct TableSet {
    VynCharSet cs;
    unsigned short const* map;
    unsigned characters; ///< UTF-16 units and, in `DoubleByteEx`, surrogate pairs that have a code.
    Form form = Form::SingleByte;
    unsigned char const* types = nullptr;
};

inline constexpr TableSet singleByteSets[] = {
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

// The EUC sets have ASCII, but for DEL, beside their map; in EUC-JP U+005C is ASCII, and JIS X 0201 adds 65. GB18030 has
// every unit but surrogates.
inline constexpr TableSet multibyteSets[] = {
    {VYNCS_WCP932, oCP932map, 9338, Form::DoubleByte, oCP932Type},
    {VYNCS_WCP936, oCP936map, 24069, Form::DoubleByte, oCP936Type},
    {VYNCS_WCP949, oCP949map, 17365, Form::DoubleByte, oCP949Type},
    {VYNCS_WCP950, oCP950map, 20202, Form::DoubleByte, oCP950Type},
    {VYNCS_SHIFTJIS, oSHIFTJISmap, 9396, Form::DoubleByte, oCP932Type},
    {VYNCS_BIG5, oBIG5map, 19839, Form::DoubleByte, oBig5Type},
    {VYNCS_SJIS0213, nullptr, 11398, Form::DoubleByteEx, oCP932Type},
    {VYNCS_EUC_CN, oGB2312map, 126 + 7445, Form::EucCnKr},
    {VYNCS_EUC_KR, oKSX1001map, 126 + 8224, Form::EucCnKr},
    {VYNCS_EUC_JP, oJIS0208map, 126 + 6878 + 65, Form::EucJp},
    {VYNCS_GB18030, oGBKmap, 0xFFFF - 0x800, Form::GB18030},
};
inline constexpr TableSet const& gb18030Set = multibyteSets[10];

inline std::vector<TableSet> tableSets() {
    std::vector<TableSet> sets(std::begin(singleByteSets), std::end(singleByteSets));
    sets.insert(sets.end(), std::begin(multibyteSets), std::end(multibyteSets));
    return sets;
}

/// The rules of the table sets in their plainest form, as what the converters are compared with.
class TableReference {
public:
    struct Character {
        unsigned value; ///< Scalar value; 0: can't be converted.
        unsigned bytes; ///< Source bytes that it takes either way.
        bool limited;   ///< Whether the source limit is tested behind it.
    };
    struct Code {
        unsigned bytes; ///< Its bytes, the last one lowest; 0: can't be converted.
        unsigned units; ///< Source units that it takes either way.
        bool ends;      ///< Whether the text ends here without a word.
    };

    explicit TableReference(TableSet const& set) : m_set(set) {
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

    /// At least three zero bytes stand behind the text.
    Character decodeOne(unsigned char const* at) const {
        unsigned const lead = at[0], trail = at[1];
        switch (m_set.form) {
        case Form::SingleByte:
            return {m_values[lead], 1, true};
        case Form::DoubleByte:
        case Form::DoubleByteEx:
            if ((m_set.types[lead] & 0x40) == 0)
                return {m_values[lead], 1, true};
            if ((m_set.types[trail] & 0x80) == 0)
                return {0, 1, false};
            return {m_values[lead << 8 | trail], 2, true};
        case Form::EucCnKr:
            if (lead < 0x7F)
                return {lead, 1, true};
            if (lead < 0xA1 || lead > 0xFE || trail < 0xA1 || trail > 0xFE)
                return {0, 1, true};
            return {m_values[(lead & 0x7F) << 8 | (trail & 0x7F)], 2, true};
        case Form::EucJp: {
            unsigned value = lead == 0x8F ? 0 : m_values[(lead & 0x7F) << 8 | (trail & 0x7F)];
            if (lead == 0x8E)
                value = trail >= 0xA1 && trail <= 0xDF ? m_values[trail] : 0;
            return lead < 0x7F ? Character{lead, 1, true} : Character{value, value != 0 ? 2U : 1U, true};
        }
        case Form::GB18030:
            break;
        }
        if (lead < 0x81 || lead == 0xFF)
            return {m_values[lead], 1, true};
        if (trail >= 0x40 && trail != 0x7F && trail != 0xFF)
            return {m_values[lead << 8 | trail], 2, m_values[lead << 8 | trail] != 0};
        if (!isDigit(trail) || at[2] < 0x81 || at[2] == 0xFF || !isDigit(at[3]))
            return {0, 1, false};
        unsigned const index = ((lead - 0x81) * 10 + trail - 0x30) * 1260 + (at[2] - 0x81U) * 10 + at[3] - 0x30U;
        if (index < supplementaryIndex)
            return {m_fourByteValues[index], 4, m_fourByteValues[index] != 0};
        unsigned const value = index - supplementaryIndex + 0x10000;
        return {value <= 0x10FFFF ? value : 0, 4, true};
    }

    /// A zero unit stands behind the text.
    Code encodeOne(unsigned short const* at) const {
        bool const euc = m_set.form == Form::EucCnKr || m_set.form == Form::EucJp;
        if (euc && at[0] < 0x7F)
            return {at[0], 1, false};
        bool const pairs = m_set.form == Form::DoubleByteEx || m_set.form == Form::GB18030;
        if (!pairs || (at[0] & 0xFC00) != 0xD800)
            return {m_codes[at[0]], 1, false};
        if ((at[1] & 0xFC00) != 0xDC00)
            return {0, 1, m_set.form == Form::GB18030};
        unsigned const position = (at[0] - 0xD800U) * 0x400 + (at[1] - 0xDC00U);
        if (m_set.form == Form::GB18030)
            return {fourBytes(position + supplementaryIndex), 2, false};
        return {m_codes[position + 0x10000], 2, false};
    }

    Converted<unsigned short> const& decode(Bytes const& source, unsigned long room, Call const& call) {
        padded(m_bytes, source);
        Units& out = m_decoded.output;
        out.clear();
        m_decoded.illegal = false;
        unsigned long at = 0;
        bool const readsNothing = m_set.form == Form::SingleByte && call.maxSrc == 0;
        while (out.size() < room && m_bytes[at] != 0 && !readsNothing) {
            Character const found = decodeOne(&m_bytes[at]);
            if (found.value == 0) {
                m_decoded.illegal = true;
                if (call.op == ILLCHAR_STOP)
                    break;
            }
            unsigned const value = found.value != 0 ? found.value : 0xFFFD;
            if (value > 0xFFFF && room - out.size() < 2)
                break;
            if (value > 0xFFFF)
                out.push_back(static_cast<unsigned short>(0xD800 + (value - 0x10000) / 0x400));
            out.push_back(static_cast<unsigned short>(value > 0xFFFF ? 0xDC00 + value % 0x400 : value));
            at += found.bytes;
            if (call.maxSrc > 0 && found.limited && at >= static_cast<unsigned long>(call.maxSrc))
                break;
        }
        return m_decoded;
    }

    Converted<unsigned char> const& encode(Units const& source, unsigned long room, ILLCHAR_OPTYPE op) {
        padded(m_units, source);
        Bytes& out = m_encoded.output;
        out.clear();
        m_encoded.illegal = false;
        unsigned short const* at = m_units.data();
        while (out.size() < room && *at != 0) {
            Code const found = encodeOne(at);
            if (found.ends)
                break;
            unsigned char text[12] = {'?'};
            unsigned long length = 1;
            if (found.bytes != 0)
                length = bytesOf(found.bytes, text);
            else if (op == ILLCHAR_ESCAPE)
                length = escapesOf(at, found.units, text);
            m_encoded.illegal |= found.bytes == 0;
            if ((found.bytes == 0 && op == ILLCHAR_STOP) || length > room - out.size())
                break;
            out.insert(out.end(), text, text + length);
            at += found.units;
        }
        return m_encoded;
    }

    /// The units that the bytes decode to with room for all. EUC-JP ends where the bytes left can't hold the sequence
    /// that a byte begins.
    unsigned long countUnits(Bytes const& source) {
        padded(m_bytes, source);
        unsigned long const size = std::strlen(reinterpret_cast<char const*>(m_bytes.data()));
        unsigned long units = 0;
        for (unsigned long at = 0; at < size;) {
            unsigned const lead = m_bytes[at];
            if (m_set.form == Form::EucJp && lead >= 0x7F && size - at < (lead == 0x8F ? 3U : 2U))
                break;
            Character const found = decodeOne(&m_bytes[at]);
            units += found.value > 0xFFFF ? 2 : 1;
            at += found.bytes;
        }
        return units;
    }

    /// Writes the bytes of a code to `bytes`; returns how many they are.
    static unsigned long bytesOf(unsigned code, unsigned char* bytes) {
        unsigned long length = 0;
        for (unsigned shift = 32; shift != 0; shift -= 8)
            if (code >> (shift - 8) != 0)
                bytes[length++] = static_cast<unsigned char>(code >> (shift - 8));
        return length;
    }

    /// The four bytes of a linear position in GB18030.
    static unsigned fourBytes(unsigned index) {
        return (index / 12600 + 0x81) << 24 | (index / 1260 % 10 + 0x30) << 16 | (index / 10 % 126 + 0x81) << 8 |
               (index % 10 + 0x30);
    }

    static constexpr unsigned supplementaryIndex = 189000; // of U+10000

private:
    static bool isDigit(unsigned byte) { return byte >= 0x30 && byte <= 0x39; }

    static unsigned long escapesOf(unsigned short const* at, unsigned units, unsigned char* text) {
        unsigned long length = 0;
        for (unsigned i = 0; i < units; ++i) {
            text[length++] = 'U';
            text[length++] = '+';
            for (unsigned shift = 16; shift != 0; shift -= 4)
                text[length++] = static_cast<unsigned char>("0123456789ABCDEF"[at[i] >> (shift - 4) & 0xF]);
        }
        return length;
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

    template <class Element>
    static void padded(std::vector<Element>& copy, std::vector<Element> const& source) {
        copy.assign(source.begin(), source.end());
        copy.resize(source.size() + 4);
    }

    TableSet m_set;
    std::vector<unsigned> m_values = std::vector<unsigned>(0x10000);
    std::vector<unsigned> m_codes = std::vector<unsigned>(0x110000);
    std::vector<unsigned> m_fourByteValues = std::vector<unsigned>(supplementaryIndex);
    Bytes m_bytes;
    Units m_units;
    Converted<unsigned short> m_decoded;
    Converted<unsigned char> m_encoded;
};
