#pragma once

namespace vyn {

/// For each mask of eight bits a row of byte numbers, by which a look-up in 16 bytes moves those together that are kept.
/// What stands behind them then is rubbish.
struct PackingRows {
    unsigned char of[256][16];
};

/// Keeps those of eight units whose bit is set.
extern PackingRows const unitsKept;

/// Keeps the first byte of each of eight units, and the second where its bit is set.
extern PackingRows const oneOrTwoBytes;

/// Of each of four groups of bytes c, d, b and any keeps d; c before it where the first of the group's two bits is set; and
/// b before both where the second is.
extern PackingRows const oneToThreeBytes;

} // namespace vyn
