#pragma once

#include "tools/vynconv/Text.h"

namespace vynconv {

/// Bytes of the sequence that `lead` begins, as the library decodes it: 4 for 0xF8 and above, 0 for a continuation
/// byte.
unsigned utf8SequenceLength(unsigned char lead);

/// Adds what the library's decoder lost of the UTF-8 text `bytes` to `losses`. Its flag can't tell, as it is raised by
/// each four-byte sequence. Lost are: a skipped continuation byte, a cut-off sequence (U+FFFD), a four-byte form of a
/// value outside U+10000 to U+10FFFF (meaningless units).
/// `unit` is where the decoded text begins. `bytes` ends at the end of a character or of the file.
void findUtf8Losses(unsigned char const* bytes, std::size_t size, std::size_t unit, std::vector<Loss>& losses);

} // namespace vynconv
