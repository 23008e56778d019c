#pragma once

#include <string>

namespace vynconv {

/// A new file that takes the name of another one once it is whole. Until then, and if it never is, it is removed with
/// the object, and by each signal that ends the process other than by a fault or at once. One object at a time.
class TemporaryFile {
public:
    /// Creates the file in the directory of `target`.
    explicit TemporaryFile(std::string const& target);
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;
    ~TemporaryFile();

    /// Open for writing; the caller closes it. Negative where the file could not be created, after `errno`.
    int descriptor() const { return m_descriptor; }

    /// Gives the file the name `target`, in the place of the file that has it. False, after `errno`, where that fails.
    bool rename(std::string const& target);

private:
    int m_descriptor = -1;
};

} // namespace vynconv
