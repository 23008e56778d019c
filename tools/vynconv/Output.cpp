#include "tools/vynconv/Output.h"

#include "tools/vynconv/Failure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace vynconv {
namespace {

// The one temporary file, where the signal handler finds it. Once it is renamed, no file has this name any more.
char temporaryPath[PATH_MAX];

extern "C" void removeTemporary(int signal) {
    ::unlink(temporaryPath);
    ::raise(signal); // default action, as the handler is reset
}

void removeTemporaryOnSignals() {
    for (int const signal : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction action = {};
        ::sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN)
            continue;
        action.sa_handler = removeTemporary;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigaction(signal, &action, nullptr);
    }
}

// What a file is created with, or what an existing one keeps when it is overwritten.
mode_t modeOf(std::string const& path) {
    struct stat status;
    if (::stat(path.c_str(), &status) == 0)
        return status.st_mode & 0777;
    mode_t const mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

bool existsAsOtherThanFile(std::string const& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

} // namespace

Output::Output(std::string const& path) : m_path(path) {
    if (path == "-" || path == "/dev/stdout") {
        m_path = "standard output";
        m_file = STDOUT_FILENO;
    } else if (existsAsOtherThanFile(path)) {
        m_file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_file < 0)
            failWithErrno("can't write " + m_path);
    } else {
        openTemporary();
    }
}

Output::~Output() {
    if (m_temporary)
        ::unlink(temporaryPath);
    if (m_file > STDOUT_FILENO)
        ::close(m_file);
}

void Output::openTemporary() {
    std::error_code error;
    auto const target = std::filesystem::weakly_canonical(m_path, error);
    if (!error && std::filesystem::is_symlink(m_path, error))
        m_path = target;
    std::string const pattern = std::filesystem::path(m_path).replace_filename(".vynconv-XXXXXX");
    if (pattern.size() >= sizeof temporaryPath)
        throw Failure("can't write " + m_path + ": the name is too long");
    std::memcpy(temporaryPath, pattern.c_str(), pattern.size() + 1);
    removeTemporaryOnSignals();
    m_file = ::mkostemp(temporaryPath, O_CLOEXEC);
    if (m_file < 0)
        failWithErrno("can't write " + m_path);
    m_temporary = true;
    ::fchmod(m_file, modeOf(m_path));
}

void Output::write(unsigned char const* bytes, std::size_t size) {
    while (size != 0) {
        ssize_t const written = ::write(m_file, bytes, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            failWithErrno("can't write " + m_path);
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

void Output::commit() {
    int const file = m_file;
    m_file = -1;
    if (::close(file) != 0)
        failWithErrno("can't write " + m_path);
    if (m_temporary && ::rename(temporaryPath, m_path.c_str()) != 0)
        failWithErrno("can't write " + m_path);
    m_temporary = false;
}

} // namespace vynconv
