#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace Oxa_1_1::platform
{

/// An object that is still there when the destructors of a program's global objects run, whichever was made first: it
/// has none that would be called.
template <class T>
class NeverDestroyed
{
   public:
    template <class... Arguments>
    explicit NeverDestroyed(Arguments&&... arguments)
    {
        ::new (static_cast<void*>(m_storage)) T(std::forward<Arguments>(arguments)...);
        static_assert(std::is_trivially_destructible_v<NeverDestroyed>);
    }
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;
    ~NeverDestroyed() = default;

    T& get() noexcept { return *std::launder(reinterpret_cast<T*>(m_storage)); }
    const T& get() const noexcept { return *std::launder(reinterpret_cast<const T*>(m_storage)); }

   private:
    alignas(T) std::byte m_storage[sizeof(T)];
};

}  // namespace Oxa_1_1::platform
