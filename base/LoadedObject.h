#pragma once

#include <new>

namespace vyn {

/// The place of a static object that lives until the library is unloaded: it is destroyed by `destroy`, never by itself,
/// as threads may still use it while the process ends.
template <class T>
union LoadedObject {
    /// With the object in it, where T can be initialised as a constant.
    constexpr LoadedObject() : object() {}

    /// Empty until `create`.
    struct Later {};
    constexpr explicit LoadedObject(Later) : none() {}

    constexpr ~LoadedObject() {} // NOLINT(modernize-use-equals-default): a default one would be deleted

    void create() { new (&object) T(); }
    void destroy() noexcept { object.~T(); }

    T object;
    char none;
};

/// For a function that runs when the library is unloaded or the process ends: whether it is the latter. Nothing may be
/// torn down then, since threads that the process does not wait for still convert.
bool processIsEnding() noexcept;

} // namespace vyn
