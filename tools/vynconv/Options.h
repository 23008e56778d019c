#pragma once

#include "tools/vynconv/CharacterSets.h"

#include <vynulib/Transcoding.h>

#include <string>
#include <vector>

namespace vynconv {

enum class Action { convert, list, detect, help, version };

/// What the command line asks for.
struct Options {
    Action action = Action::convert;
    InputSet from{};
    VynCharSet to{};
    vynulib::OnError onError = vynulib::OnError::replace;
    bool mark = false;              ///< The output begins with a byte-order mark, which its set has.
    bool overwrite = false;         ///< An existing output file is written itself.
    bool inPlace = false;           ///< Each file is its own output.
    bool verbose = false;           ///< Each loss is told.
    std::string output = "-";       ///< "-" is standard output.
    std::vector<std::string> files; ///< At least one; "-" is standard input.
};

extern char const helpText[];

/// Throws `UsageFailure`. For `Action::convert` both sets have a converter.
Options parseOptions(int argc, char** argv);

} // namespace vynconv
