#pragma once

namespace vyn {

/// How far a bulk form came.
template <class Element>
struct BulkDecoded {
    Element const* src;
    unsigned short* dst;
    bool sawIllegal = false;
};
/// The same as a kernel returns it, which is in registers: what is returned in memory is waited for.
struct KernelDecoded {
    unsigned long bytes;
    unsigned long units : 63;
    unsigned long sawIllegal : 1;

    BulkDecoded<unsigned char> from(unsigned char const* src, unsigned short* dst) const {
        return {src + bytes, dst + units, sawIllegal != 0};
    }
};
static_assert(sizeof(KernelDecoded) == 2 * sizeof(unsigned long));

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
