#include "base/LazyBuilder.h"

#include <pthread.h>

namespace vyn {
namespace {

constinit pthread_mutex_t buildMutex = PTHREAD_MUTEX_INITIALIZER;

void lock() {
    pthread_mutex_lock(&buildMutex);
}
void unlock() {
    pthread_mutex_unlock(&buildMutex);
}

// At load, as a thread may fork while another one holds the lock for the first time. Unloading takes the handlers back.
[[gnu::constructor]] void lockForForks() {
    pthread_atfork(lock, unlock, unlock);
}

} // namespace

BuildLock::BuildLock() noexcept {
    lock();
}

BuildLock::~BuildLock() {
    unlock();
}

} // namespace vyn
