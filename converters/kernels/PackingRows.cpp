#include "converters/kernels/PackingRows.h"

namespace vyn {
namespace {

/// Writes one row.
class RowWriter {
public:
    constexpr explicit RowWriter(unsigned char* row) : m_at(row) {}

    constexpr void keep(unsigned byte, unsigned bit = 1) {
        if ((bit & 1) != 0)
            *m_at++ = static_cast<unsigned char>(byte);
    }

private:
    unsigned char* m_at;
};

/// The rows that `write(row, mask)` writes.
template <class Write>
consteval PackingRows rowsOf(Write write) {
    PackingRows rows = {};
    for (unsigned mask = 0; mask < 256; ++mask)
        write(RowWriter(rows.of[mask]), mask);
    return rows;
}

} // namespace

constinit PackingRows const unitsKept = rowsOf([](RowWriter row, unsigned mask) {
    for (unsigned unit = 0; unit < 8; ++unit)
        for (unsigned byte = 0; byte < 2; ++byte)
            row.keep(2 * unit + byte, mask >> unit);
});

constinit PackingRows const oneOrTwoBytes = rowsOf([](RowWriter row, unsigned mask) {
    for (unsigned unit = 0; unit < 8; ++unit) {
        row.keep(2 * unit);
        row.keep(2 * unit + 1, mask >> unit);
    }
});

constinit PackingRows const oneToThreeBytes = rowsOf([](RowWriter row, unsigned mask) {
    for (unsigned group = 0; group < 4; ++group) {
        row.keep(4 * group + 2, mask >> (2 * group + 1));
        row.keep(4 * group, mask >> 2 * group);
        row.keep(4 * group + 1);
    }
});

} // namespace vyn
