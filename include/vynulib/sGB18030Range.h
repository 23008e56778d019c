#pragma once

/// A run of consecutive values that map to consecutive values: `first` to `last` onto `target` and up.
/// A range list is sorted by `first` and ends with a record of three zeros.
struct sGB18030Range {
    unsigned int first;  ///< A key of GB18030 or a UTF-16 unit.
    unsigned int last;   ///< Inclusive.
    unsigned int target; ///< What `first` maps to: a unit or a key.
};
