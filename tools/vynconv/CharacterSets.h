#pragma once

#include <vynulib/VynCharSet.h>

#include <string>

namespace vynconv {

/// The set of the inputs.
struct InputSet {
    VynCharSet cs;
    VynCharSet
        ifMarked; ///< Of an input that begins with this one's byte-order mark; `cs` where the name fixes the order.
};

/// The set that is meant by `name`, the default set as the one that it stands for. Throws `UsageFailure` for a name that
/// is not known, and for the default set where that has no converter.
VynCharSet findSet(std::string const& name);

/// The same for the inputs, where UTF-16 and UTF-32 leave the byte order to a mark.
InputSet findInputSet(std::string const& name);

/// What a text in the set may begin with to tell its byte order or its set; empty for sets that have no such mark.
std::string byteOrderMark(VynCharSet cs);

/// The sets that can be converted, one line each by number: number, name, preferred name.
std::string listCharacterSets();

/// The default set and the locale text that it was taken from, as one line.
std::string describeDefaultSet();

} // namespace vynconv
