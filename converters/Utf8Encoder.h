#pragma once

#include <vynulib/VynCharSetConverter.h>

namespace vyn {

/// How an escape for a lone high surrogate treats what lies around it.
enum class Utf8Escapes {
    AsConverter, ///< Charges five of its six bytes to the room and steps over the unit behind it, whatever that is.
    Bounded,     ///< Charges all six and stops at the terminator. What fits is the same.
};

/// `VynCharSetConverterUTF8::fromUTF16`, which says what it does. For the library's own callers there are escapes that
/// leave neither the room nor the source.
unsigned long encodeUtf8(void* dst, unsigned short const* src, unsigned long dstCap, ILLCHAR_OPTYPE op, bool* illegal,
                         Utf8Escapes escapes);

} // namespace vyn
