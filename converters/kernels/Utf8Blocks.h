#pragma once

#include "converters/loops/Codec.h"

namespace vyn {

/// Decodes well-formed sequences that end before the last three bytes of [src, end), up to the first irregular one. A
/// pair leaves room for two units more, so the literal path would read its continuation bytes again: it raises the flag.
BulkDecoded<unsigned char> decodeUtf8Blocks(unsigned char const* src, unsigned char const* end, unsigned short* dst);

/// Encodes [src, end) up to the first high surrogate whose low one is not in it. A store may reach one byte behind the
/// character, where the terminator will stand at the latest.
BulkEncoded<unsigned char> encodeUtf8Blocks(unsigned short const* src, unsigned short const* end, unsigned char* dst);

} // namespace vyn
