#pragma once

#include "converters/loops/Codec.h"

namespace vyn {

/// What is a sequence: by its form only, or by Unicode's definition, without overlong forms, surrogates and values above
/// U+10FFFF.
enum class Utf8Rules { lenient, strict };

/// Decodes sequences that end before the last three bytes of [src, end), up to the first irregular one. By the lenient
/// rules a pair raises the flag: it leaves room for two units more, so the literal path would read its continuation bytes
/// again.
template <Utf8Rules Rules>
BulkDecoded<unsigned char> decodeUtf8Blocks(unsigned char const* src, unsigned char const* end, unsigned short* dst);

/// Encodes [src, end) up to the first high surrogate whose low one is not in it, by the strict rules up to any surrogate
/// without its other half. A store may reach one byte past the character, where a terminator will stand at the latest.
template <Utf8Rules Rules>
BulkEncoded<unsigned char> encodeUtf8Blocks(unsigned short const* src, unsigned short const* end, unsigned char* dst);

} // namespace vyn
