#include "tools/vynconv/StandardDescriptors.h"

#include "tools/vynconv/Failure.h"

#include <fcntl.h>
#include <unistd.h>

namespace vynconv {

void fillClosedStandardDescriptors() {
    for (int const descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        bool const closed = ::fcntl(descriptor, F_GETFD) < 0;
        // Takes the lowest number that is free. A path-only descriptor can't be read or written, and a directory not
        // even where it is opened anew by a name like /dev/stdin.
        if (closed && ::open("/", O_PATH | O_DIRECTORY) < 0)
            failWithErrno("can't replace a closed standard descriptor");
    }
}

} // namespace vynconv
