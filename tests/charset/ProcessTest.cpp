// What happens to threads when their process ends or forks. Each case is a process of its own.

#include "tests/support/FailingAllocation.h"

#include <vynulib/VynCharSetConverter.h>
#include <vynulib/VynUChar.h>
#include <vynulib/VynUString.h>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

using namespace std::chrono_literals;

constexpr VynCharSet sets[] = {
    VYNCS_WCP932,  VYNCS_WCP936,  VYNCS_WCP949,  VYNCS_WCP950,  VYNCS_BIG5,       VYNCS_SHIFTJIS,   VYNCS_SJIS0213,
    VYNCS_EUC_CN,  VYNCS_EUC_KR,  VYNCS_EUC_JP,  VYNCS_GB18030, VYNCS_KOI8R,      VYNCS_WCP1250,    VYNCS_WCP1251,
    VYNCS_WCP1252, VYNCS_WCP1253, VYNCS_WCP1254, VYNCS_WCP874,  VYNCS_ISO_8859_2, VYNCS_ISO_8859_5,
};

void useEverySet() {
    for (VynCharSet const cs : sets) {
        char bytes[16];
        unsigned short const text[] = {0x3042, 0x0416, 'a', 0};
        VynCharSetConverter::getConverter(cs)->fromUTF16(bytes, text, 15, ILLCHAR_REPLACE, nullptr);
    }
    VynUString(static_cast<unsigned short>(0xE9)).toUpper(false);
}

/// Runs `body` in a process of its own, which it may end; returns how that ended. A process that hangs is killed.
template <class Body>
int statusOf(Body body) {
    pid_t const child = fork();
    if (child == 0) {
        alarm(20);
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

TEST(Process, ForksWhileThreadsBuildTables) {
    for (int round = 0; round < 4; ++round)
        ASSERT_EQ(statusOf([] {
                      std::thread first(useEverySet), second(useEverySet);
                      int failures = 0;
                      pid_t children[12];
                      for (pid_t& child : children) {
                          child = fork();
                          if (child == 0) {
                              alarm(10);
                              useEverySet();
                              _exit(0);
                          }
                          std::this_thread::sleep_for(200us);
                      }
                      for (pid_t const child : children) {
                          int status = -1;
                          waitpid(child, &status, 0);
                          failures += status != 0;
                      }
                      first.join();
                      second.join();
                      _exit(failures);
                  }),
                  0);
}

} // namespace
