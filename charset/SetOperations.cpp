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

} // namespace

constinit SetOperations const singleByteOperations =
    operationsOf<WithTables<VynCharSetConverterSBCS, SingleByteCodec>>(false);
constinit SetOperations const doubleByteOperations =
    operationsOf<WithTables<VynCharSetConverterDBCS, StrictDoubleByteCodec<DoubleByteCodec>>>(false);
constinit SetOperations const doubleByteExOperations =
    operationsOf<WithTables<VynCharSetConverterDBCSEx, StrictDoubleByteCodec<DoubleByteExCodec>>>(false);
constinit SetOperations const eucCnKrOperations =
    operationsOf<WithTables<VynCharSetConverterEUC_CN_KR, EucCnKrCodec>>(false);
constinit SetOperations const eucJpOperations =
    operationsOf<WithTables<VynCharSetConverterEUC_JP, StrictEucJpCodec>>(false);
constinit SetOperations const gb18030Operations =
    operationsOf<WithTables<VynCharSetConverterGB18030, Gb18030Codec>>(false);
constinit SetOperations const utf8Operations = operationsOf<Plain<StrictUtf8Codec>>(true);
constinit SetOperations const utf16EscOperations = operationsOf<Plain<StrictUtf16EscCodec>>(true);
constinit SetOperations const utf16LeOperations = operationsOf<Plain<StrictUtf16Codec<std::endian::little>>>(true);
constinit SetOperations const utf16BeOperations = operationsOf<Plain<StrictUtf16Codec<std::endian::big>>>(true);
constinit SetOperations const utf32LeOperations = operationsOf<Plain<StrictUtf32Codec<std::endian::little>>>(true);
constinit SetOperations const utf32BeOperations = operationsOf<Plain<StrictUtf32Codec<std::endian::big>>>(true);

} // namespace vyn
