#include "charset/ServedSets.h"

#include "converters/codecs/DoubleByte.h"
#include "converters/codecs/EucCnKr.h"
#include "converters/codecs/EucJp.h"
#include "converters/codecs/Gb18030.h"
#include "converters/codecs/SingleByte.h"
#include "converters/codecs/Utf16.h"
#include "converters/codecs/Utf16Esc.h"
#include "converters/codecs/Utf32.h"
#include "converters/codecs/Utf8.h"
#include "converters/loops/Report.h"

#include <vynulib/VynCharSetConverterDBCS.h>
#include <vynulib/VynCharSetConverterDBCSEx.h>
#include <vynulib/VynCharSetConverterEUC_CN_KR.h>
#include <vynulib/VynCharSetConverterGB18030.h>
#include <vynulib/VynCharSetConverterSBCS.h>

namespace vyn {

/// Gives the codec of a converter, with its tables loaded, to those who convert by other loops.
struct CodecAccess {
    template <class Converter>
    static auto codecOf(VynCharSetConverter* converter) {
        return static_cast<Converter*>(converter)->codec();
    }
};

namespace {

using vynulib::Progress;

/// The codec of a set without tables.
template <class Codec>
struct Plain {
    static Codec codec(VynCharSetConverter*) { return {}; }
};

/// The codec of a set whose tables a converter owns.
template <class Converter, class Codec>
struct WithTables {
    static Codec codec(VynCharSetConverter* converter) { return {CodecAccess::codecOf<Converter>(converter)}; }
};

template <class Set>
Progress decodeIn(VynCharSetConverter* converter, std::string_view source, char16_t* dst, std::size_t room, bool last,
                  Losses& losses) {
    return PieceDecoder(Set::codec(converter), source, last, losses).run(dst, room);
}

template <class Set>
Progress encodeIn(VynCharSetConverter* converter, std::u16string_view source, char* dst, std::size_t room, bool last,
                  Losses& losses) {
    return PieceEncoder(Set::codec(converter), source, last, losses).run(dst, room);
}

template <class Set>
SetOperations::Decoded decodePartIn(VynCharSetConverter* converter, void const* src, unsigned short* dst,
                                    std::size_t room) {
    auto const codec = Set::codec(converter);
    using Element = typename decltype(codec)::Element;
    auto const done =
        decodeAll(codec, static_cast<Element const*>(src), dst, codec.ready() ? room : 0, ILLCHAR_REPLACE);
    return {done.src, static_cast<std::size_t>(done.dst - dst), done.sawIllegal};
}

template <class Set>
SetOperations::Encoded encodePartIn(VynCharSetConverter* converter, unsigned short const* src, void* dst,
                                    std::size_t room, ILLCHAR_OPTYPE op) {
    auto const codec = Set::codec(converter);
    using Element = typename decltype(codec)::Element;
    auto* const start = static_cast<Element*>(dst);
    auto const done = encodeAll(codec, src, start, codec.ready() ? room / sizeof(Element) : 0, op);
    *done.dst = Element{0};
    return {static_cast<std::size_t>(done.src - src), static_cast<std::size_t>(done.dst - start) * sizeof(Element)};
}

/// UTF-16, which is copied: of a text without a source limit deliberately nothing is.
SetOperations::Decoded decodeNothing(VynCharSetConverter*, void const* src, unsigned short*, std::size_t) {
    return {src, 0, false};
}
SetOperations::Encoded copyUnits(VynCharSetConverter* converter, unsigned short const* src, void* dst, std::size_t room,
                                 ILLCHAR_OPTYPE op) {
    std::size_t const bytes = converter->fromUTF16(dst, src, room, op, nullptr);
    return {bytes / sizeof *src, bytes};
}

/// UTF-8 as its converter takes it, but for what that does at the end of the room.
struct Utf8PartCodec : Utf8Codec {
    static constexpr bool replacesPairsOutOfRoom = false;

    constexpr Utf8PartCodec() : Utf8Codec{.boundedEscapes = true} {}
};

/// Of texts with a length, by the codec of `Set`.
template <class Set>
constexpr SetOperations operationsOf(bool unicode) {
    using Codec = decltype(Set::codec(nullptr));
    return {.decode = decodeIn<Set>,
            .encode = encodeIn<Set>,
            .elementSize = sizeof(typename Codec::Element),
            .maxUnitsPerElement = Codec::maxUnitsPerElement,
            .maxElementsPerUnit = Codec::maxElementsPerUnit,
            .unicode = unicode,
            .loneSurrogates = EncodesSurrogates<Codec>};
}

/// With those of texts that end at a terminator, by the codec of the converter, which is that of `Set` too where none is
/// named.
template <class Set, class Terminated = Set>
constexpr SetOperations allOperationsOf(bool unicode) {
    SetOperations operations = operationsOf<Set>(unicode);
    operations.decodePart = decodePartIn<Terminated>;
    operations.encodePart = encodePartIn<Terminated>;
    return operations;
}

constexpr SetOperations utf16Operations() {
    SetOperations operations = operationsOf<Plain<StrictUtf16Codec<std::endian::little>>>(true);
    operations.decodePart = decodeNothing;
    operations.encodePart = copyUnits;
    return operations;
}

/// A set with tables, where texts with a length have rules of their own.
template <class Converter, class StrictCodec, class Codec>
constexpr SetOperations tableOperationsOf() {
    return allOperationsOf<WithTables<Converter, StrictCodec>, WithTables<Converter, Codec>>(false);
}

} // namespace

constinit SetOperations const singleByteOperations =
    allOperationsOf<WithTables<VynCharSetConverterSBCS, SingleByteCodec>>(false);
constinit SetOperations const doubleByteOperations =
    tableOperationsOf<VynCharSetConverterDBCS, StrictDoubleByteCodec<DoubleByteCodec>, DoubleByteCodec>();
constinit SetOperations const doubleByteExOperations =
    tableOperationsOf<VynCharSetConverterDBCSEx, StrictDoubleByteCodec<DoubleByteExCodec>, DoubleByteExCodec>();
constinit SetOperations const eucCnKrOperations =
    allOperationsOf<WithTables<VynCharSetConverterEUC_CN_KR, EucCnKrCodec>>(false);
constinit SetOperations const eucJpOperations =
    tableOperationsOf<VynCharSetConverterEUC_JP, StrictEucJpCodec, EucJpCodec>();
constinit SetOperations const gb18030Operations =
    allOperationsOf<WithTables<VynCharSetConverterGB18030, Gb18030Codec>>(false);
constinit SetOperations const utf8Operations = allOperationsOf<Plain<StrictUtf8Codec>, Plain<Utf8PartCodec>>(true);
constinit SetOperations const utf16EscOperations =
    allOperationsOf<Plain<StrictUtf16EscCodec>, Plain<Utf16EscCodec>>(true);
constinit SetOperations const utf16LeOperations = utf16Operations();
constinit SetOperations const utf16BeOperations = operationsOf<Plain<StrictUtf16Codec<std::endian::big>>>(true);
constinit SetOperations const utf32LeOperations =
    allOperationsOf<Plain<StrictUtf32Codec<std::endian::little>>, Plain<Utf32Codec>>(true);
constinit SetOperations const utf32BeOperations = operationsOf<Plain<StrictUtf32Codec<std::endian::big>>>(true);

} // namespace vyn
