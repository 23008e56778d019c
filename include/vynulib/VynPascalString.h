#pragma once

/// A byte text with its length in front and no terminator.
///
/// Only the length and as many bytes as it says are read or written, so a pointer to this structure may stand for a
/// shorter buffer than the structure itself.
struct VynPascalString {
    unsigned char length; ///< Bytes of `text` in use.
    char text[255];       ///< In whatever character set reader and writer agree on.
};
