#pragma once

/// A UTF-16 text with its length in front and no terminator; zero units count as text.
///
/// Only the length and as many units as it says are read or written, so a pointer to this structure may stand for a
/// shorter buffer than the structure itself.
struct VynBSTR {
    unsigned short length;      ///< Units of `text` in use.
    unsigned short text[65535]; ///< In the machine's byte order.
};
