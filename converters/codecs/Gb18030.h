#pragma once

#include "base/Surrogates.h"
#include "converters/codecs/MultibyteTables.h"
#include "converters/loops/Codec.h"
#include "tables/Tables.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace vyn {

/// Keys stand for sequences: a code of one or two bytes is its own key; four bytes have the key of their linear
/// position, from `fourByteKeys` on.
namespace gb18030 {

constexpr unsigned linear(unsigned b1, unsigned b2, unsigned b3, unsigned b4) {
    return ((b1 * 10 + b2) * 126 + b3) * 10 + b4;
}

constexpr unsigned fourByteKeys = 0x10000;

constexpr unsigned keyOf(unsigned b1, unsigned b2, unsigned b3, unsigned b4) {
    return linear(b1, b2, b3, b4) - linear(0x81, '0', 0x81, '0') + fourByteKeys;
}

constexpr unsigned supplementaryKeys = keyOf(0x90, '0', 0x81, '0'); // of U+10000, the others follow in order
constexpr unsigned supplementaryOffset = supplementaryKeys - (maxBmpValue + 1); // key less scalar value
constexpr unsigned endOfKeys = keyOf(0xFE, '9', 0xFE, '9') + 1;

/// The four bytes of a key, the last one in the lowest eight bits.
constexpr unsigned bytesOf(unsigned key) {
    unsigned const position = key - fourByteKeys;
    unsigned const high = position / 1260, low = position % 1260;
    return (high / 10 + 0x81) << 24 | (high % 10 + '0') << 16 | (low / 10 + 0x81) << 8 | (low % 10 + '0');
}

/// The four bytes of the next key.
constexpr unsigned following(unsigned bytes) {
    if ((bytes & 0xFF) != '9')
        return bytes + 1;
    bytes -= 9;
    if ((bytes >> 8 & 0xFF) != 0xFE)
        return bytes + 0x100;
    bytes -= (0xFE - 0x81) << 8;
    return (bytes >> 16 & 0xFF) != '9' ? bytes + 0x10000 : bytes - (9U << 16) + 0x1000000;
}
static_assert(following(bytesOf(fourByteKeys + 1259)) == bytesOf(fourByteKeys + 1260));
static_assert(following(bytesOf(fourByteKeys + 12599)) == bytesOf(fourByteKeys + 12600));

constexpr bool isLead(unsigned byte) {
    return byte >= 0x81 && byte <= 0xFE;
}
constexpr bool isTwoByteTrail(unsigned byte) {
    return byte >= 0x40 && byte <= 0xFE && byte != 0x7F;
}
constexpr bool isDigit(unsigned byte) {
    return byte >= '0' && byte <= '9';
}

// The index into the ranges of either direction: for each bucket of values the last range that begins before it, or the
// first one. A value is found from there on forward.
struct KeyBuckets {
    static constexpr unsigned first = 0x8100;
    static constexpr unsigned last = 0x19FFF; // of those that ranges map
    static constexpr unsigned count = (last - first) / 256 + 1;
    static constexpr unsigned start(unsigned bucket) { return first + 256 * bucket; }
    static constexpr unsigned of(unsigned key) { return (std::clamp(key, first, last) - first) / 256; }
};

struct UnitBuckets {
    static constexpr unsigned count = 512;
    static constexpr unsigned start(unsigned bucket) { return 128 * bucket; }
    static constexpr unsigned of(unsigned unit) { return std::min(unit, maxBmpValue) / 128; }
};

template <class Buckets>
class RangeIndex {
public:
    explicit RangeIndex(sGB18030Range const* ranges) {
        sGB18030Range const* range = ranges;
        for (unsigned bucket = 0; bucket < Buckets::count; ++bucket) {
            while (range[1].first != 0 && range[1].first < Buckets::start(bucket))
                ++range;
            m_starts[bucket] = range;
        }
    }

    sGB18030Range const* start(unsigned value) const { return m_starts[Buckets::of(value)]; }

    /// What `value` maps to; -1 if that is nothing.
    long lookup(unsigned value) const {
        sGB18030Range const* range = start(value);
        while (range->first != 0 && range->last < value)
            ++range;
        return range->first != 0 && range->first <= value ? long{range->target} + (value - range->first) : -1;
    }

private:
    sGB18030Range const* m_starts[Buckets::count];
};

} // namespace gb18030

class Gb18030Tables : public MultibyteTables {
public:
    explicit Gb18030Tables(unsigned short const* map) : MultibyteTables(map) {
        for (sGB18030Range const* range = oUni2GBRange; range->first != 0; ++range)
            if (range->target >= gb18030::fourByteKeys)
                fillLonger(*range);
    }

    gb18030::RangeIndex<gb18030::KeyBuckets> scalarOfKey{oGB2UniRange};
    gb18030::RangeIndex<gb18030::UnitBuckets> keyOfUnit{oUni2GBRange};

    /// The bytes of a unit with zeros behind them, the first in the lowest eight bits; 0 where it has none by itself. As
    /// for `encodeOne`, the map goes before the ranges.
    std::uint32_t bytesOf(unsigned short unit) const {
        unsigned short const code = rows->codeOf[unit];
        return code != 0 ? code : m_longer[unit];
    }

private:
    void fillLonger(sGB18030Range const& range) {
        unsigned bytes = gb18030::bytesOf(range.target);
        for (unsigned unit = range.first; unit <= range.last; ++unit, bytes = gb18030::following(bytes))
            m_longer[unit] = __builtin_bswap32(bytes);
    }

    std::uint32_t m_longer[0x10000] = {}; // of units with four bytes
};

struct Gb18030Codec : DoubleByteVectors<Gb18030Tables> {
    using Element = unsigned char;
    static constexpr unsigned maxUnitsPerElement = 1;
    static constexpr unsigned maxElementsPerUnit = 4;

    bool ready() const { return tables != nullptr; }

    /// The source limit deliberately does not count after a sequence that begins as one of several bytes and is none.
    Decoded decodeOne(auto text) const {
        using namespace gb18030;
        if (text[0] < 0x81)
            return lookedUpUnit(tables->forward.lookup(text[0]), 1);
        if (!isLead(text[0]))
            return unmapped(1);
        if (!text.has(1))
            return unmappedUnlimited(1, true);
        if (isTwoByteTrail(text[1]))
            return twoBytes(text[0] * 256U + text[1]);
        if (!isDigit(text[1]))
            return unmappedUnlimited(1);
        if (!text.has(2) || (isLead(text[2]) && !text.has(3)))
            return unmappedUnlimited(1, true);
        if (!isLead(text[2]) || !isDigit(text[3]))
            return unmappedUnlimited(1);
        return fourBytes(keyOf(text[0], text[1], text[2], text[3]));
    }

    Encoded encodeOne(auto text) const {
        if (isHighSurrogate(text[0])) {
            // A high surrogate without its low one deliberately ends the text, as if it were the terminator.
            if (!text.has(1) || !isLowSurrogate(text[1]))
                return {.code = 0, .elements = 0, .units = 0, .mapped = false, .endsText = true};
            return encoded(combineSurrogates(text[0], text[1]) + gb18030::supplementaryOffset, 2);
        }
        if (unsigned const code = tables->reverse.lookup(text[0]); code != 0)
            return encoded(code, 1);
        long const key = tables->keyOfUnit.lookup(text[0]);
        return key >= 0 ? encoded(static_cast<unsigned>(key), 1) : unmappedUnits(1);
    }

    /// Units with codes of their own, four at a time, each of which is stored with zeros behind it: what comes next is sure
    /// to be stored over them.
    BulkEncoded<unsigned char> encodeGroups(unsigned short const* src, unsigned short const* end,
                                            unsigned char* dst) const {
        constexpr long group = 4;
        while (end - src >= 2 * group &&
               std::all_of(src, src + 2 * group, [this](unsigned short unit) { return tables->bytesOf(unit) != 0; })) {
            for (auto const* const groupEnd = src + group; src != groupEnd; ++src) {
                std::uint32_t const bytes = tables->bytesOf(*src);
                std::memcpy(dst, &bytes, sizeof bytes);
                dst += (39 - std::countl_zero(bytes)) / 8;
            }
        }
        return {src, dst};
    }

    bool keepsAscii() const { return tables->keepsAscii(); }

private:
    Decoded inRanges(unsigned key, unsigned bytes) const {
        long const value = tables->scalarOfKey.lookup(key);
        return value >= 0 ? mappedScalar(static_cast<unsigned>(value), bytes) : unmappedUnlimited(bytes);
    }

    Decoded twoBytes(unsigned code) const {
        if (unsigned const value = tables->forward.lookup(static_cast<unsigned short>(code)); value != 0)
            return mappedUnit(value, 2);
        return inRanges(code, 2);
    }

    Decoded fourBytes(unsigned key) const {
        if (key < gb18030::supplementaryKeys)
            return inRanges(key, 4);
        unsigned const value = key - gb18030::supplementaryOffset;
        return value <= maxScalarValue ? mappedScalar(value, 4) : unmapped(4);
    }

    static Encoded encoded(unsigned key, unsigned units) {
        if (key < gb18030::fourByteKeys)
            return mappedCode(key, key < 0x100 ? 1 : 2, units);
        return key < gb18030::endOfKeys ? mappedCode(gb18030::bytesOf(key), 4, units) : unmappedUnits(units);
    }
};

static_assert(Decodes<Gb18030Codec> && Encodes<Gb18030Codec> && KeepsAscii<Gb18030Codec>);
static_assert(DecodesPieces<Gb18030Codec> && EncodesPieces<Gb18030Codec>);
static_assert(DecodesVectors<Gb18030Codec> && EncodesVectors<Gb18030Codec> && EncodesGroups<Gb18030Codec>);

} // namespace vyn
