#include "tools/vynconv/TemporaryFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace vynconv {
namespace {

// The one temporary file, where the signal handler finds it. Once it is renamed, no file has this name any more.
char temporaryPath[PATH_MAX];

// Not SIGXFSZ, which the command ignores.
constexpr int endingSignals[] = {SIGHUP,  SIGINT,  SIGQUIT,   SIGTERM, SIGALRM, SIGUSR1, SIGUSR2,
                                 SIGPIPE, SIGPROF, SIGVTALRM, SIGXCPU, SIGIO,   SIGPWR,  SIGABRT};

extern "C" void removeTemporary(int signal) {
    int const error = errno;
    ::unlink(temporaryPath);
    ::raise(signal); // default action, as the handler is reset
    errno = error;
}

void removeOnSignals() {
    for (int const signal : endingSignals) {
        struct sigaction action = {};
        ::sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN)
            continue;
        action.sa_handler = removeTemporary;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigaction(signal, &action, nullptr);
    }
}

} // namespace

TemporaryFile::TemporaryFile(std::string const& target) {
    std::string const pattern = target.substr(0, target.rfind('/') + 1) + ".vynconv-XXXXXX";
    if (pattern.size() >= sizeof temporaryPath) {
        errno = ENAMETOOLONG;
        return;
    }
    std::memcpy(temporaryPath, pattern.c_str(), pattern.size() + 1);
    removeOnSignals();
    m_descriptor = ::mkostemp(temporaryPath, O_CLOEXEC);
}

TemporaryFile::~TemporaryFile() {
    if (m_descriptor >= 0)
        ::unlink(temporaryPath);
}

bool TemporaryFile::rename(std::string const& target) {
    if (::rename(temporaryPath, target.c_str()) != 0)
        return false;
    m_descriptor = -1;
    return true;
}

} // namespace vynconv
