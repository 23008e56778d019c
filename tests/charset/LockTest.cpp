// Takes the place of the functions that lock, and counts: what is built is read without a lock.

#include "tests/charset/FirstUse.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>

namespace {

std::atomic<int> locks = 0;

template <class Object>
int callNext(char const* name, Object* object) {
    ++locks;
    return reinterpret_cast<int (*)(Object*)>(dlsym(RTLD_NEXT, name))(object);
}

TEST(Locks, AreTakenToBuildAndNotToConvert) {
    FirstUse const use(g_oCnvtMgr);
    locks = 0;
    unsigned long const built = use.useAll();
    EXPECT_GE(locks, 26 + 11) << "one for each set with tables";
    locks = 0;
    EXPECT_EQ(use.useAll(), built);
    EXPECT_EQ(locks, 0);
}

} // namespace

extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    return callNext("pthread_mutex_lock", mutex);
}
extern "C" int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
    return callNext("pthread_rwlock_rdlock", lock);
}
extern "C" int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
    return callNext("pthread_rwlock_wrlock", lock);
}
