#include "base/CheckedReads.h"

#include <sys/prctl.h>

// There where the program runs with the sanitizer's runtime, whether the library was built with it or not.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizers' own names
void __asan_init() __attribute__((weak));
void __hwasan_init() __attribute__((weak));
void __msan_init() __attribute__((weak));
void __tsan_init() __attribute__((weak));
// NOLINTEND(bugprone-reserved-identifier)
}

namespace vyn {
namespace {

bool isSanitized() {
    return __asan_init || __hwasan_init || __msan_init || __tsan_init;
}

/// Asks in the way that valgrind documents for programs: instructions that do nothing on a processor.
bool isUnderValgrind() {
    constexpr std::uintptr_t runningOnValgrind = 0x1001;
    std::uintptr_t const request[6] = {runningOnValgrind};
    std::uintptr_t answer = 0;
#if defined(__x86_64__)
    asm volatile("rolq $3, %%rdi; rolq $13, %%rdi; rolq $61, %%rdi; rolq $51, %%rdi; xchgq %%rbx, %%rbx"
                 : "+d"(answer)
                 : "a"(request)
                 : "cc", "memory");
#elif defined(__aarch64__)
    asm volatile("mov x3, %1; mov x4, %2;"
                 "ror x12, x12, #3; ror x12, x12, #13; ror x12, x12, #51; ror x12, x12, #61; orr x10, x10, x10;"
                 "mov %0, x3"
                 : "=r"(answer)
                 : "r"(answer), "r"(request)
                 : "cc", "memory", "x3", "x4");
#endif
    return answer != 0;
}

bool isTagged() {
    int const control = prctl(PR_GET_TAGGED_ADDR_CTRL, 0, 0, 0, 0);
    return control > 0 && (static_cast<unsigned>(control) & PR_MTE_TCF_MASK) != PR_MTE_TCF_NONE;
}

[[gnu::constructor]] void findChecker() {
    readsAreChecked = isSanitized() || isUnderValgrind() || isTagged();
}

} // namespace

constinit bool readsAreChecked = true;

} // namespace vyn
