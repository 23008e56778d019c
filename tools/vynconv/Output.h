#pragma once

#include "tools/vynconv/TemporaryFile.h"

#include <sys/stat.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vynconv {

/// Where the converted text goes. A regular file appears under its name whole, by `commit`, or not at all; it may be an
/// input as well. Standard output, devices and FIFOs are written directly. All failures are thrown as `Failure`.
/// One object at a time.
class Output {
public:
    /// "-" is standard output. With `overwrite` an existing file is written directly as well. What is written directly
    /// must not be one of the files `inputs`, where "-" is standard input: it would grow while it is read.
    Output(std::string const& path, bool overwrite, std::vector<std::string> const& inputs);
    Output(Output const&) = delete;
    Output& operator=(Output const&) = delete;
    ~Output();

    void write(std::string_view bytes);

    /// Ends the output. Nothing may be written afterwards.
    void commit();

private:
    void open(std::string const& path, bool overwrite);
    void openTemporary(struct stat const* existing);
    void refuseInput(std::string const& input) const;
    [[noreturn]] void fail() const;

    std::string m_name; // as messages show it
    std::string m_path; // of the file itself, where it was reached by symbolic links
    int m_file = -1;
    std::optional<TemporaryFile> m_temporary;
};

} // namespace vynconv
