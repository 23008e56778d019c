#include <vynulib/VynCharSetConverterSBCS.h>

#include "base/BuildOnce.h"
#include "base/UnitScan.h"
#include "base/Words.h"
#include "converters/MapRecords.h"
#include "converters/loops/DecodeLoop.h"
#include "converters/loops/EncodeLoop.h"

namespace {

constexpr unsigned byteValues = 256;

} // namespace

struct vyn::SingleByteCodec {
    static constexpr bool supplementary = false;
    static constexpr bool limitBehindMalformed = true;

    unsigned short const* forward;
    LookupTable<unsigned char> const* reverse;

    bool ready() const { return forward != nullptr; }

    Decoded decodeOne(unsigned char const* at) const { return lookedUp(forward[*at], 1); }

    // Blocks of four characters: their units make one word, which shows at once whether one of them is 0.
    long decodeBlocks(unsigned char const* src, unsigned char const* end, unsigned short* dst) const {
        constexpr long block = 4;
        long taken = 0;
        for (; end - src - taken >= block; taken += block) {
            std::uint64_t word = 0;
            for (long i = 0; i < block; ++i)
                word |= std::uint64_t{forward[src[taken + i]]} << 16 * i;
            if (hasZeroUnit(word))
                break;
            std::memcpy(dst + taken, &word, sizeof word);
        }
        return taken;
    }

    long encodeBlocks(unsigned short const* src, unsigned short const* end, unsigned char* dst) const {
        constexpr long block = 4;
        long taken = 0;
        for (; end - src - taken >= block; taken += block) {
            unsigned const a = reverse->lookup(src[taken]), b = reverse->lookup(src[taken + 1]);
            unsigned const c = reverse->lookup(src[taken + 2]), d = reverse->lookup(src[taken + 3]);
            if (a == 0 || b == 0 || c == 0 || d == 0)
                break;
            std::uint32_t const word = a | b << 8 | c << 16 | d << 24;
            std::memcpy(dst + taken, &word, sizeof word);
        }
        return taken;
    }

    Encoded encodeOne(unsigned short const* at) const {
        unsigned char const byte = reverse->lookup(*at);
        return {byte, 1, 1, byte != 0 ? Verdict::Mapped : Verdict::Unmapped};
    }
};

VynCharSetConverterSBCS::~VynCharSetConverterSBCS() {
    delete[] m_pForward.load(std::memory_order_acquire);
    delete m_pReverse;
    pthread_mutex_destroy(&m_mutex);
}

void VynCharSetConverterSBCS::load() {
    vyn::buildOnce(m_pForward, m_mutex, [this] { return m_pMap ? buildTables() : nullptr; });
}

unsigned short* VynCharSetConverterSBCS::buildTables() {
    auto forward = std::make_unique<unsigned short[]>(byteValues);
    auto reverse = std::make_unique<LookupTable<unsigned char>>();
    vyn::forEachRecord(m_pMap, [&](unsigned short code, unsigned short unit) {
        auto const byte = static_cast<unsigned char>(code);
        forward[byte] = unit;
        reverse->insert(unit, byte);
    });
    m_pReverse = reverse.release();
    return forward.release();
}

vyn::SingleByteCodec VynCharSetConverterSBCS::codec() {
    load();
    return {m_pForward.load(std::memory_order_acquire), m_pReverse};
}

unsigned long VynCharSetConverterSBCS::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                               ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    // Unlike the multibyte sets, this one reads nothing for a limit of 0.
    unsigned long const room = maxSrc == 0 ? 0 : dstUnits;
    return vyn::decodeText(codec(), dst, src, room, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterSBCS::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                 ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText(codec(), dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterSBCS::getNumUnits(void const* src, unsigned long len) {
    return src ? strnlen(static_cast<char const*>(src), len) : 0;
}

unsigned long VynCharSetConverterSBCS::getNumBytes(unsigned short const* src, unsigned long len) {
    return src ? vyn::unitLength(src, len) : 0;
}

unsigned int VynCharSetConverterSBCS::getMinUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterSBCS::getMaxUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterSBCS::getNullCharSize() const {
    return 1;
}
