#pragma once

namespace vyn {

/// How far a bulk form came.
template <class Element>
struct BulkDecoded {
    Element const* src;
    unsigned short* dst;
    bool sawIllegal = false;
};
template <class Element>
struct BulkEncoded {
    unsigned short const* src;
    Element* dst;
};
/// The same of a count.
template <class Element>
struct BulkCounted {
    Element const* src;
    unsigned long count;
};

} // namespace vyn
