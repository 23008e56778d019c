#pragma once

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

namespace vynconv {

/// Why the command can't go on; the text is the message for the user.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The command line is wrong.
struct UsageFailure : Failure {
    using Failure::Failure;
};

/// Throws a `Failure` that says what could not be done, and why after `errno`.
[[noreturn]] inline void failWithErrno(std::string const& what) {
    int const error = errno;
    throw Failure(what + ": " + std::generic_category().message(error));
}

} // namespace vynconv
