#pragma once

/// One record of a mapping table whose characters may lie beyond the Basic Multilingual Plane.
/// A table ends with the record {0, 0}, which is not an entry.
struct sMBCSExTable {
    unsigned int code;    ///< A byte as itself, or lead byte * 256 + trail byte.
    unsigned int unicode; ///< A Unicode scalar value, U+0001 to U+10FFFF.
};
