#include "base/LoadedObject.h"

#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <unwind.h>

namespace vyn {
namespace {

/// By its name as well: in a program that is not position-independent the address of exit() may be one of its own.
bool isExit(void* function) {
    Dl_info info;
    return function == reinterpret_cast<void*>(&std::exit) ||
           (dladdr(function, &info) != 0 && info.dli_sname && std::strcmp(info.dli_sname, "exit") == 0);
}

_Unwind_Reason_Code findExit(_Unwind_Context* frame, void* found) {
    _Unwind_Ptr const call = _Unwind_GetIP(frame) - 1; // the address after it may be the next function
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the unwinder tells addresses as integers and takes them as pointers
    if (!isExit(_Unwind_FindEnclosingFunction(reinterpret_cast<void*>(call))))
        return _URC_NO_REASON;
    *static_cast<bool*>(found) = true;
    return _URC_END_OF_STACK;
}

} // namespace

// By the call stack: only at its end does a process come here by way of exit(). The order of the exit handlers does not
// tell: it is another one for a library that the program was linked with than for one that it loaded itself.
bool processIsEnding() noexcept {
    bool ending = false;
    _Unwind_Backtrace(findExit, &ending);
    return ending;
}

} // namespace vyn
