#pragma once

#include <vynulib/VynCharSetConverter.h>

#include <string>
#include <vector>

namespace vynconv {

enum class Action { convert, list, detect, help, version };

/// What the command line asks for.
struct Options {
    Action action = Action::convert;
    VynCharSet from = VYNCS_UTF8;
    VynCharSet to = VYNCS_UTF8;
    ILLCHAR_OPTYPE onError = ILLCHAR_REPLACE;
    std::string output = "-";       ///< "-" is standard output.
    std::vector<std::string> files; ///< At least one; "-" is standard input.
};

extern char const helpText[];

/// Throws `UsageFailure`. For `Action::convert` both sets are served ones.
Options parseOptions(int argc, char** argv);

} // namespace vynconv
