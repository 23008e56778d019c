#include "tools/vynconv/Output.h"

#include "tools/vynconv/Failure.h"
#include "tools/vynconv/Messages.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>

namespace vynconv {
namespace {

// Where a file of this name is or would be created. What the system can't follow is left as it is.
std::string followLinks(std::filesystem::path path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int i = 0; i < mostLinks && std::filesystem::is_symlink(path, error); ++i)
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    return path;
}

mode_t modeOfNewFiles() {
    mode_t const mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// Before the mode is set, as it can take rights away. Others than root can't give a file to its owner, but to a group
// that they are in.
void keepOwner(int file, struct stat const& existing) {
    if (::fchown(file, existing.st_uid, existing.st_gid) == 0)
        return;
    [[maybe_unused]] int const groupKept = ::fchown(file, static_cast<uid_t>(-1), existing.st_gid);
}

} // namespace

Output::Output(std::string const& path, bool overwrite, std::vector<std::string> const& inputs)
    : m_name(printable(path)), m_path(path) {
    if (path == "-" || path == "/dev/stdout") {
        m_name = "standard output";
        m_file = STDOUT_FILENO;
    } else {
        open(path, overwrite);
    }
    for (std::string const& input : inputs)
        refuseInput(input);
    if (overwrite && m_file != STDOUT_FILENO && ::ftruncate(m_file, 0) != 0 && errno != EINVAL) // no regular file
        fail();
}

Output::~Output() {
    if (m_file > STDOUT_FILENO)
        ::close(m_file);
}

void Output::open(std::string const& path, bool overwrite) {
    struct stat existing;
    if (::stat(path.c_str(), &existing) != 0) {
        if (errno != ENOENT)
            fail();
        openTemporary(nullptr);
    } else if (overwrite || !S_ISREG(existing.st_mode)) {
        m_file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_file < 0)
            fail();
    } else {
        // Replacing a file needs no right to write it, but nobody expects that one without it changes.
        if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
            fail();
        openTemporary(&existing);
    }
}

void Output::openTemporary(struct stat const* existing) {
    m_path = followLinks(m_path);
    m_file = m_temporary.emplace(m_path).descriptor();
    if (m_file < 0 && existing)
        failWithErrno("can't write " + m_name +
                      " by way of a temporary file beside it (--overwrite writes it directly)");
    if (m_file < 0)
        fail();
    if (existing)
        keepOwner(m_file, *existing);
    ::fchmod(m_file, existing ? existing->st_mode & 0777 : modeOfNewFiles()); // some file systems know no modes
}

void Output::refuseInput(std::string const& input) const {
    struct stat in;
    struct stat out;
    bool const known = (input == "-" ? ::fstat(STDIN_FILENO, &in) : ::stat(input.c_str(), &in)) == 0 &&
                       ::fstat(m_file, &out) == 0 && S_ISREG(in.st_mode);
    if (known && in.st_dev == out.st_dev && in.st_ino == out.st_ino)
        throw Failure((input == "-" ? "standard input" : printable(input)) + " is the output file as well");
}

void Output::write(std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const written = ::write(m_file, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            fail();
    }
}

void Output::commit() {
    int const file = m_file;
    m_file = -1;
    if (::close(file) != 0)
        fail();
    if (m_temporary && !m_temporary->rename(m_path))
        fail();
}

void Output::fail() const {
    failWithErrno("can't write " + m_name);
}

} // namespace vynconv
