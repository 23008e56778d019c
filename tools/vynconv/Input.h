#pragma once

#include <cstddef>
#include <string>

namespace vynconv {

/// A file to read, or standard input. All failures are thrown as `Failure`.
class Input {
public:
    /// "-" is standard input.
    explicit Input(std::string const& path);
    Input(Input const&) = delete;
    Input& operator=(Input const&) = delete;
    ~Input();

    /// Reads what is there, at most `size` bytes; 0 only at the end.
    std::size_t read(char* dst, std::size_t size);

    /// As messages show it.
    std::string const& name() const { return m_name; }

    /// Bytes of a regular file, 0 where that is unknown.
    std::size_t size() const { return m_size; }

private:
    std::string m_name;
    int m_file;
    std::size_t m_size = 0;
};

} // namespace vynconv
