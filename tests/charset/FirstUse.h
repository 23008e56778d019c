#pragma once

#include "tests/support/ServedSets.h"

#include <vynulib/CharSetConverterManager.h>
#include <vynulib/Transcoding.h>
#include <vynulib/VynUChar.h>
#include <vynulib/VynUString.h>

#include <iterator>

/// Everything whose first use may build something: each set, the default set among them, the names, the character tables.
class FirstUse {
public:
    static constexpr unsigned setCount = 54, count = setCount + 4;

    /// Has a name and a set that no other registry knows, put there before any thread asks.
    explicit FirstUse(CharSetConverterManager& registry) : m_registry(registry) {
        registry.insertCharSetMap(ownSet, VynUString("OWN", VYNCS_ISO_8859_1));
        registry.insert(ownSet, VynCharSetConverter::getConverter(VYNCS_KOI8R), true);
    }

    /// Uses one of them; a number that depends on what comes of it.
    unsigned long operator()(unsigned what) const {
        if (what < setCount)
            return convert(namedSets[what]);
        switch (what - setCount) {
        case 0:
            return sum(m_registry.charSetToString(ownSet)) + sum(VynCharSetToString(VYNCS_SJIS0213));
        case 1:
            return static_cast<unsigned>(m_registry.charSetFromString("OWN")) +
                   static_cast<unsigned>(VynCharSetFromString("VYNCS_BIG5"));
        case 2:
            return VynUChar::getCharClass(u'\u3042') + VynUChar::m_gUpperCaseTable.getValue(0xE9);
        default:
            return lowerCase();
        }
    }

    unsigned long useAll() const {
        unsigned long all = 0;
        for (unsigned what = 0; what < count; ++what)
            all = all * 31 + (*this)(what);
        return all;
    }

private:
    static constexpr auto ownSet = static_cast<VynCharSet>(28602);
    static_assert(std::size(namedSets) == setCount);

    template <class Element>
    static unsigned long sum(Element const* text) {
        unsigned long all = 0;
        for (; *text != 0; ++text)
            all = all * 31 + static_cast<unsigned long>(*text);
        return all;
    }

    unsigned long convert(VynCharSet cs) const {
        static constexpr unsigned short text[] = {0x3042, 0x0416, 0xAC00, 0x20AC, 0xFF71, 'a', 0xE9, 0};
        char bytes[64] = {};
        unsigned short units[64] = {};
        VynCharSetConverter& converter = *m_registry.getConverter(cs);
        converter.fromUTF16(bytes, text, 40, ILLCHAR_REPLACE, nullptr);
        converter.toUTF16(units, bytes, 40, ILLCHAR_REPLACE, nullptr, -1);
        unsigned long all = sum(bytes) + sum(units) + converter.getNumBytes(text, 7);
        all += GetNumUnits(bytes, cs) + UTF16ToLocal(bytes, text, 60, cs) + LocalToUTF16(units, bytes, 60, cs);
        if (auto const served = vynulib::charSetNamed(std::to_string(static_cast<int>(cs))))
            all += vynulib::encode(*served, u"\u3042\uFF71a", vynulib::OnError::escape).size();
        return all;
    }

    static unsigned long lowerCase() {
        VynUString text(u"\u00C9A");
        text.toLower(false);
        return sum(text.data()) + (text.compareNoCase(VynUString(u"\u00E9a")) == 0);
    }

    CharSetConverterManager& m_registry;
};
