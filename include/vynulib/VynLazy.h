#pragma once

namespace vyn {

/// What its owner builds at the first use and only reads from then on: a pointer that is null until then.
///
/// `get` costs one acquiring load, on any number of threads. Trivially destructible, and T may be incomplete, so that
/// an object with one is initialised as a constant; the owner's destructor releases what was built.
template <class T>
class Lazy {
public:
    constexpr Lazy() noexcept = default;
    Lazy(Lazy const&) = delete;
    Lazy& operator=(Lazy const&) = delete;

    /// Null before the first use. What it points to is complete and never changes.
    T const* get() const noexcept { return __atomic_load_n(&m_built, __ATOMIC_ACQUIRE); }

private:
    friend struct LazyBuilder; // of the library

    T* m_built = nullptr;
};

} // namespace vyn
