#pragma once

#include <vynulib/VynLazy.h>

#include <memory>

namespace vyn {

/// Held by whoever builds something lazy: one lock for all of it. It is taken for a fork too, so that a child process
/// never inherits it from a thread that the child lacks.
class BuildLock {
public:
    BuildLock() noexcept;
    BuildLock(BuildLock const&) = delete;
    BuildLock& operator=(BuildLock const&) = delete;
    ~BuildLock();
};

/// Gives the owner of a `Lazy` what the readers of it lack.
struct LazyBuilder {
    /// Builds at the first use what `build` returns as a `std::unique_ptr`, and publishes it when it is complete. What
    /// `build` throws leaves all as it was; the next use tries again.
    template <class T, class Build>
    static T const& build(Lazy<T>& lazy, Build build) {
        T const* const built = lazy.get();
        return built ? *built : buildFirst(lazy, build);
    }

    /// For the destructor of the owner.
    template <class T>
    static void release(Lazy<T>& lazy) noexcept {
        delete lazy.m_built;
        lazy.m_built = nullptr;
    }

private:
    /// Out of the way of later uses, which then cost their callers next to nothing.
    template <class T, class Build>
    [[gnu::noinline, gnu::cold]] static T const& buildFirst(Lazy<T>& lazy, Build build) {
        BuildLock const lock;
        if (!lazy.m_built)
            __atomic_store_n(&lazy.m_built, std::unique_ptr<T>(build()).release(), __ATOMIC_RELEASE);
        return *lazy.m_built;
    }
};

} // namespace vyn
