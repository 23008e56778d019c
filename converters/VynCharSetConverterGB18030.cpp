#include <vynulib/VynCharSetConverterGB18030.h>

#include "base/BuildOnce.h"
#include "converters/loops/DecodeLoop.h"
#include "converters/loops/EncodeLoop.h"
#include "tables/Tables.h"

#include <algorithm>
#include <memory>

namespace {

// Keys: a code of one or two bytes is its own; four bytes have their linear position, from fourByteKeys on, where the
// supplementary planes follow each other from supplementaryKeys on.
constexpr unsigned fourByteKeys = 0x10000;
constexpr unsigned supplementaryKeys = 254536;
constexpr unsigned supplementaryOffset = 189000; // key less code point
constexpr unsigned endOfKeys = 1653136;

constexpr bool isFourByteLead(unsigned char byte) {
    return byte >= 0x81 && byte <= 0xFE;
}
constexpr bool isTwoByteTrail(unsigned char byte) {
    return byte >= 0x40 && byte <= 0xFE && byte != 0x7F;
}
constexpr bool isDigit(unsigned char byte) {
    return byte >= '0' && byte <= '9';
}

unsigned fourByteKey(unsigned char const* at) {
    return (at[0] * 10U + at[1]) * 1260U + at[2] * 10U + at[3] - 1621682U;
}

unsigned fourByteCode(unsigned key) {
    unsigned const position = key - fourByteKeys;
    return (position / 12600 + 0x81) << 24 | (position / 1260 % 10 + '0') << 16 | (position % 1260 / 10 + 0x81) << 8 |
           (position % 10 + '0');
}

// The index into the ranges of either direction: for each bucket of values the last range that begins before it, or the
// first one. A value is found from there on forward.
struct KeyBuckets {
    static constexpr unsigned count = 287;
    static constexpr unsigned first = 0x8100;
    static constexpr unsigned last = 0x19FFF;
    static unsigned start(unsigned bucket) { return first + 256 * bucket; }
    static unsigned of(unsigned key) { return key < first ? 0 : (std::min(key, last) - first) >> 8; }
};

struct UnitBuckets {
    static constexpr unsigned count = 512;
    static unsigned start(unsigned bucket) { return 128 * bucket; }
    static unsigned of(unsigned unit) { return std::min(unit, vyn::maxBmpValue) >> 7; }
};

template <class Buckets>
sGB18030Range const** buildIndex(sGB18030Range const* ranges) {
    auto index = std::make_unique<sGB18030Range const*[]>(Buckets::count);
    sGB18030Range const* range = ranges;
    for (unsigned bucket = 0; bucket < Buckets::count; ++bucket) {
        while (range[1].first != 0 && range[1].first < Buckets::start(bucket))
            ++range;
        index[bucket] = range;
    }
    return index.release();
}

/// The value that `key` maps to, searched from `range` on; -1 if there is none.
long valueInRanges(sGB18030Range const* range, unsigned key) {
    while (range->first != 0 && range->last < key)
        ++range;
    return range->first != 0 && range->first <= key ? long{range->target} + (key - range->first) : -1;
}

} // namespace

struct vyn::GB18030Codec {
    static constexpr bool supplementary = true;
    static constexpr bool limitBehindMalformed = false;
    static constexpr bool pairsSurrogates = true;

    LookupTable<unsigned short> const* forward;
    LookupTable<unsigned short> const* reverse;
    sGB18030Range const* const* keyIndex;
    sGB18030Range const* const* unitIndex;

    bool ready() const { return forward != nullptr; }

    /// A sequence of several bytes without a value counts as malformed, so that the source limit is not tested behind
    /// it.
    Decoded inRanges(unsigned key, unsigned bytes) const {
        long const value = valueInRanges(keyIndex[KeyBuckets::of(key)], key);
        return value >= 0 ? mapped(static_cast<unsigned>(value), bytes) : malformed(bytes);
    }

    Decoded twoBytes(unsigned code) const {
        if (unsigned const value = forward->lookup(static_cast<unsigned short>(code)); value != 0)
            return mapped(value, 2);
        return inRanges(code, 2);
    }

    Decoded fourBytes(unsigned key) const {
        if (key < supplementaryKeys)
            return inRanges(key, 4);
        unsigned const value = key - supplementaryOffset;
        return value <= maxScalarValue ? mapped(value, 4) : unmapped(4);
    }

    Decoded decodeOne(unsigned char const* at) const {
        if (at[0] < 0x81)
            return lookedUp(forward->lookup(at[0]), 1);
        if (at[0] == 0xFF)
            return unmapped(1);
        if (isTwoByteTrail(at[1]))
            return twoBytes(at[0] * 256U + at[1]);
        if (isDigit(at[1]) && isFourByteLead(at[2]) && isDigit(at[3]))
            return fourBytes(fourByteKey(at));
        return malformed(1);
    }

    static Encoded encoded(unsigned key, unsigned units) {
        if (key < 0x100)
            return {key, 1, units, Verdict::Mapped};
        if (key < fourByteKeys)
            return {key, 2, units, Verdict::Mapped};
        if (key < endOfKeys)
            return {fourByteCode(key), 4, units, Verdict::Mapped};
        return {0, 0, units, Verdict::Unmapped};
    }

    Encoded encodeOne(unsigned short const* at) const {
        if (isHighSurrogate(at[0])) {
            // A high surrogate without its low one deliberately ends the text, as if it were the terminator.
            if (!isLowSurrogate(at[1]))
                return {0, 0, 0, Verdict::End};
            return encoded(combineSurrogates(at[0], at[1]) + supplementaryOffset, 2);
        }
        if (unsigned const code = reverse->lookup(at[0]); code != 0)
            return encoded(code, 1);
        long const key = valueInRanges(unitIndex[UnitBuckets::of(at[0])], at[0]);
        return key >= 0 ? encoded(static_cast<unsigned>(key), 1) : Encoded{0, 0, 1, Verdict::Unmapped};
    }
};

VynCharSetConverterGB18030::~VynCharSetConverterGB18030() {
    delete[] m_pGB2UniIndex.load(std::memory_order_acquire);
    delete[] m_pUni2GBIndex.load(std::memory_order_acquire);
    pthread_mutex_destroy(&m_indexMutex);
}

void VynCharSetConverterGB18030::load() {
    if (m_pUni2GBIndex.load(std::memory_order_acquire))
        return;
    VynCharSetConverterMBCS::load();
    vyn::buildOnce(m_pGB2UniIndex, m_indexMutex, [] { return buildIndex<KeyBuckets>(oGB2UniRange); });
    vyn::buildOnce(m_pUni2GBIndex, m_indexMutex, [] { return buildIndex<UnitBuckets>(oUni2GBRange); });
}

sGB18030Range const* VynCharSetConverterGB18030::getGB2UniRange(unsigned int key) {
    load();
    return key < KeyBuckets::first ? oGB2UniRange : m_pGB2UniIndex.load(std::memory_order_acquire)[KeyBuckets::of(key)];
}

sGB18030Range const* VynCharSetConverterGB18030::getUni2GBRange(unsigned int unit) {
    load();
    return m_pUni2GBIndex.load(std::memory_order_acquire)[UnitBuckets::of(unit)];
}

vyn::GB18030Codec VynCharSetConverterGB18030::codec() {
    load();
    return {forwardTable(), reverseTable(), m_pGB2UniIndex, m_pUni2GBIndex};
}

unsigned long VynCharSetConverterGB18030::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                  ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText(codec(), dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterGB18030::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                    ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText(codec(), dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterGB18030::getNumUnits(void const* src, unsigned long len) {
    return vyn::countDecoded(codec(), src, len);
}

unsigned long VynCharSetConverterGB18030::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(codec(), src, len);
}

unsigned int VynCharSetConverterGB18030::getMinUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterGB18030::getMaxUnitSize() const {
    return 4;
}
unsigned int VynCharSetConverterGB18030::getNullCharSize() const {
    return 1;
}
