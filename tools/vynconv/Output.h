#pragma once

#include <cstddef>
#include <string>

namespace vynconv {

/// Where the converted text goes. A regular file appears under its name whole, by `commit`, or not at all: until then
/// the text is in a temporary file beside it, which is removed if `commit` is never reached, also by a signal.
/// Standard output, devices and FIFOs are written directly. All failures are thrown as `Failure`.
/// One object at a time.
class Output {
public:
    /// "-" is standard output.
    explicit Output(std::string const& path);
    Output(Output const&) = delete;
    Output& operator=(Output const&) = delete;
    ~Output();

    void write(unsigned char const* bytes, std::size_t size);

    /// Ends the output. Nothing may be written afterwards.
    void commit();

private:
    void openTemporary();

    std::string m_path; // of the file itself, where it was reached by a symbolic link
    int m_file = -1;
    bool m_temporary = false;
};

} // namespace vynconv
