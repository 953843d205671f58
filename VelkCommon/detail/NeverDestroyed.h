#pragma once

#include <cstddef>
#include <new>

namespace Velk::detail {

/// An object that is made once and then lives until the process ends; its destructor never runs. It is
/// meant for objects that may still be needed while the process is ending: by the destructors of other
/// static objects, whose order across libraries is unknown, and by threads that nobody waits for.
///
///     Pool& pool()
///     {
///         static NeverDestroyed<Pool> sessions;
///         return *sessions;
///     }
template <typename Object>
class NeverDestroyed
{
public:
    NeverDestroyed() : NeverDestroyed([] { return Object(); }) {}
    /// Holds the object that `make` returns, for classes that only their own functions can construct.
    template <typename Make>
    explicit NeverDestroyed(Make make) : object_(::new (static_cast<void*>(room_)) Object(make()))
    {}
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;

    Object& operator*() noexcept { return *object_; }

private:
    alignas(Object) std::byte room_[sizeof(Object)];
    Object* object_;
};

}  // namespace Velk::detail
