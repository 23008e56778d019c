#include "tools/vynconv/Input.h"

#include "tools/vynconv/Failure.h"
#include "tools/vynconv/Messages.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vynconv {

Input::Input(std::string const& path)
    : m_name(path == "-" ? "standard input" : printable(path)),
      m_file(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (m_file < 0)
        failWithErrno("can't open " + m_name);
    struct stat status;
    if (::fstat(m_file, &status) == 0 && S_ISREG(status.st_mode))
        m_size = static_cast<std::size_t>(status.st_size);
}

Input::~Input() {
    if (m_file != STDIN_FILENO)
        ::close(m_file);
}

std::size_t Input::read(char* dst, std::size_t size) {
    ssize_t got;
    while ((got = ::read(m_file, dst, size)) < 0) {
        if (errno != EINTR)
            failWithErrno("can't read " + m_name);
    }
    return static_cast<std::size_t>(got);
}

} // namespace vynconv
