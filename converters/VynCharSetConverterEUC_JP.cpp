#include <vynulib/VynCharSetConverterEUC_JP.h>

#include "base/BuildOnce.h"
#include "converters/MapRecords.h"
#include "converters/codecs/RowCellCode.h"
#include "converters/loops/DecodeLoop.h"
#include "converters/loops/EncodeLoop.h"

namespace {

constexpr unsigned char SS2 = VynCharSetConverterEUC_JP::m_cSS2;
constexpr unsigned char SS3 = VynCharSetConverterEUC_JP::m_cSS3;
constexpr unsigned endOfAscii = 0x7F; // DEL is deliberately no character of this set

constexpr bool isKatakana(unsigned byte) {
    return byte >= 0xA1 && byte <= 0xDF;
}

} // namespace

struct vyn::EucJpCodec {
    using Table = LookupTable<unsigned short>;

    static constexpr bool supplementary = false;
    static constexpr bool limitBehindMalformed = true;
    static constexpr bool pairsSurrogates = false;

    Table const* forward; // JIS X 0208 and 0201
    Table const* reverse;
    Table const* jis0212Forward; // null without a map
    Table const* jis0212Reverse;

    bool ready() const { return forward != nullptr; }

    unsigned threeByteValue(unsigned char const* at) const {
        if (!jis0212Forward || at[1] == 0 || at[2] == 0)
            return 0;
        return jis0212Forward->lookup(rowCellCode(at[1], at[2]));
    }

    /// A sequence without a character gives up its first byte only.
    static Decoded sequence(unsigned value, unsigned bytes) { return value != 0 ? mapped(value, bytes) : malformed(1); }

    Decoded decodeOne(unsigned char const* at) const {
        if (at[0] < endOfAscii)
            return mapped(at[0], 1);
        if (at[0] == SS2)
            return sequence(isKatakana(at[1]) ? forward->lookup(at[1]) : 0U, 2);
        if (at[0] == SS3)
            return sequence(threeByteValue(at), 3);
        // The high bit of the second byte is deliberately not tested: A4 22 is read as A4 A2. A lead byte 80 reaches
        // the plain codes of JIS X 0201: 80 DC is U+00A5.
        return sequence(forward->lookup(rowCellCode(at[0], at[1])), 2);
    }

    Encoded encodeOne(unsigned short const* at) const {
        if (*at < endOfAscii)
            return {*at, 1, 1, Verdict::Mapped};
        if (unsigned const code = reverse->lookup(*at); code != 0)
            return {isKatakana(code) ? unsigned{SS2} << 8 | code : (code + rowCellHighBits) & 0xFFFF, 2, 1,
                    Verdict::Mapped};
        if (unsigned const code = jis0212Reverse ? jis0212Reverse->lookup(*at) : 0U; code != 0)
            return {unsigned{SS3} << 16 | ((code + rowCellHighBits) & 0xFFFF), 3, 1, Verdict::Mapped};
        return {0, 0, 1, Verdict::Unmapped};
    }

    /// Unlike the conversion, counts every katakana byte behind SS2, and ends where the bytes left can't hold a
    /// sequence.
    Counted countOne(unsigned char const* at, unsigned long bytesLeft) const {
        if (at[0] < endOfAscii)
            return {1, 1};
        if (bytesLeft < (at[0] == SS3 ? 3 : 2))
            return {0, 0};
        if (at[0] == SS2)
            return {isKatakana(at[1]) ? 2U : 1U, 1};
        return {decodeOne(at).bytes, 1};
    }
};

VynCharSetConverterEUC_JP::~VynCharSetConverterEUC_JP() {
    delete m_pJIS0212Forward.load(std::memory_order_acquire);
    delete m_pJIS0212Reverse;
    pthread_mutex_destroy(&m_JIS0212Mutex);
}

void VynCharSetConverterEUC_JP::load() {
    if (m_pJIS0212Forward.load(std::memory_order_acquire))
        return;
    VynCharSetConverterMBCS::load();
    vyn::buildOnce(m_pJIS0212Forward, m_JIS0212Mutex, [this] { return m_pJIS0212Map ? buildJIS0212() : nullptr; });
}

VynCharSetConverterEUC_JP::Table* VynCharSetConverterEUC_JP::buildJIS0212() {
    vyn::TablePair jis0212;
    vyn::enterRecords(*jis0212.forward, *jis0212.reverse, m_pJIS0212Map);
    if (m_pJIS0201Map && forwardTable())
        vyn::enterRecords(*forwardTable(), *reverseTable(), m_pJIS0201Map);
    m_pJIS0212Reverse = jis0212.reverse.release();
    return jis0212.forward.release();
}

vyn::EucJpCodec VynCharSetConverterEUC_JP::codec() {
    load();
    return {forwardTable(), reverseTable(), m_pJIS0212Forward, m_pJIS0212Reverse};
}

unsigned long VynCharSetConverterEUC_JP::toUTF16(unsigned short* dst, void const* src, unsigned long dstUnits,
                                                 ILLCHAR_OPTYPE op, bool* illegal, int maxSrc) {
    return vyn::decodeText(codec(), dst, src, dstUnits, op, illegal, maxSrc);
}

unsigned long VynCharSetConverterEUC_JP::fromUTF16(void* dst, unsigned short const* src, unsigned long dstCap,
                                                   ILLCHAR_OPTYPE op, bool* illegal) {
    return vyn::encodeText(codec(), dst, src, dstCap, op, illegal);
}

unsigned long VynCharSetConverterEUC_JP::getNumUnits(void const* src, unsigned long len) {
    vyn::EucJpCodec const codec = this->codec();
    if (!codec.ready())
        return 0;
    return vyn::countUnits(
        src, len, [&codec](unsigned char const* at, unsigned long bytesLeft) { return codec.countOne(at, bytesLeft); });
}

unsigned long VynCharSetConverterEUC_JP::getNumBytes(unsigned short const* src, unsigned long len) {
    return vyn::countBytes(codec(), src, len);
}

unsigned int VynCharSetConverterEUC_JP::getMinUnitSize() const {
    return 1;
}
unsigned int VynCharSetConverterEUC_JP::getMaxUnitSize() const {
    return 3;
}
unsigned int VynCharSetConverterEUC_JP::getNullCharSize() const {
    return 1;
}
