#pragma once

#include <atomic>
#include <pthread.h>

namespace vyn {

class MutexLock {
public:
    explicit MutexLock(pthread_mutex_t& mutex) : m_mutex(mutex) { pthread_mutex_lock(&m_mutex); }
    MutexLock(MutexLock const&) = delete;
    MutexLock& operator=(MutexLock const&) = delete;
    ~MutexLock() { pthread_mutex_unlock(&m_mutex); }

private:
    pthread_mutex_t& m_mutex;
};

/// Builds what `published` points to at its first use, at most once, and publishes it when all of it is complete.
/// `build` returns the object, or null where there is nothing to build it from; what it throws leaves all as it was.
template <class T, class Build>
void buildOnce(std::atomic<T*>& published, pthread_mutex_t& mutex, Build build) {
    if (published.load(std::memory_order_acquire))
        return;
    MutexLock lock(mutex);
    if (!published.load(std::memory_order_relaxed))
        published.store(build(), std::memory_order_release);
}

} // namespace vyn
