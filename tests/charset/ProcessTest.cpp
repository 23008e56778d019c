// What threads meet with: the first use of anything, the end of their process, a fork. Each case is a process of its own, in
// which nothing is built yet. VYNULIB_TEST_PROCESSES says how many of them there are.

#include "tests/charset/FirstUse.h"
#include "tests/support/FailingAllocation.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

int processCount() {
    char const* const given = std::getenv("VYNULIB_TEST_PROCESSES");
    return given ? std::atoi(given) : 4;
}

/// Runs `body` in a process of its own, which it may end; returns how that ended. A process that hangs is killed.
template <class Body>
int statusOf(Body body) {
    pid_t const child = fork();
    if (child == 0) {
        alarm(60);
        body();
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

/// Leaves output that exit() writes last of all, which takes it a while: threads run on after all was torn down.
void writeSlowlyAtExit() {
    cookie_io_functions_t functions{};
    functions.write = [](void*, char const*, std::size_t size) {
        std::this_thread::sleep_for(50ms);
        return static_cast<ssize_t>(size);
    };
    std::fputc('x', fopencookie(nullptr, "w", functions));
}

void convertWithoutMemory() {
    unsigned short units[2];
    VynCharSetConverter::getConverter(VYNCS_WCP932)->toUTF16(units, "\x82\xA0", 1, ILLCHAR_REPLACE, nullptr, -1);
    if (units[0] != 0x3042 || VynUChar::m_gUpperCaseTable.getValue(0xE9) != 0xC9)
        std::abort();
}

TEST(Process, EndsWhileThreadsConvert) {
    for (int round = 0; round < 4; ++round)
        ASSERT_EQ(statusOf([] {
                      writeSlowlyAtExit();
                      convertWithoutMemory(); // builds the tables
                      for (int i = 0; i < 4; ++i)
                          std::thread([] {
                              for (;;)
                                  convertWithoutMemory();
                          }).detach();
                      std::this_thread::sleep_for(20ms);
                      allocationsLeft = 0; // no table can be built anew
                      std::exit(0);
                  }),
                  0);
}

TEST(Process, SixteenThreadsMeetAtEveryFirstUse) {
    constexpr unsigned threadCount = 16;
    for (int round = 0; round < processCount() && !HasFailure(); ++round)
        ASSERT_EQ(statusOf([round] {
                      CharSetConverterManager ownRegistry;
                      FirstUse const use(round % 2 == 0 ? g_oCnvtMgr : ownRegistry);
                      static unsigned long results[threadCount][FirstUse::count];
                      std::barrier start(threadCount);
                      std::vector<std::thread> threads;
                      for (auto& result : results)
                          threads.emplace_back([&] {
                              for (unsigned what = 0; what < FirstUse::count; ++what) {
                                  start.arrive_and_wait();
                                  result[what] = use(what);
                              }
                          });
                      for (std::thread& thread : threads)
                          thread.join();
                      int failures = 0;
                      for (auto const& result : results)
                          for (unsigned what = 0; what < FirstUse::count; ++what)
                              failures += result[what] != use(what);
                      _exit(std::min(failures, 255));
                  }),
                  0)
            << "process " << round;
}

TEST(Process, ForksWhileThreadsBuildTables) {
    auto const codeOf = [](unsigned long result) { return static_cast<int>(result % 255) + 1; };
    for (int round = 0; round < processCount() && !HasFailure(); ++round)
        ASSERT_EQ(statusOf([codeOf] {
                      FirstUse const use(g_oCnvtMgr);
                      auto const useAll = [&] { use.useAll(); };
                      std::thread first(useAll), second(useAll);
                      int failures = 0;
                      pid_t children[6];
                      for (pid_t& child : children) {
                          child = fork();
                          if (child == 0) {
                              alarm(20);
                              _exit(codeOf(use.useAll()));
                          }
                          std::this_thread::sleep_for(200us);
                      }
                      first.join();
                      second.join();
                      for (pid_t const child : children) {
                          int status = -1;
                          waitpid(child, &status, 0);
                          failures += !WIFEXITED(status) || WEXITSTATUS(status) != codeOf(use.useAll());
                      }
                      _exit(failures);
                  }),
                  0)
            << "process " << round;
}

} // namespace
