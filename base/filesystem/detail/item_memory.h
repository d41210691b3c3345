#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace Oxa_1_1::detail
{

/// The memory of an implementation, with room for the item that owns it and for the counts of that item, because the
/// two are made and go together. Once the item has taken its room it outlives the implementation, even when it is given
/// another one meanwhile, and all is freed with it.
template <class Impl>
class ItemMemory
{
   public:
    /// For Impl::operator new and Impl::operator delete.
    /// @{
    static void* allocate() { return (new ItemMemory)->m_impl; }
    static void free(void* impl) noexcept
    {
        ItemMemory* const memory = of(impl);
        if (!memory->m_isTaken) delete memory;
    }
    /// @}

    /// The item of an implementation that was made by `new`.
    template <class Item>
    static std::shared_ptr<Item> makeItem(std::unique_ptr<Impl> impl)
    {
        const Allocator<Item> allocator(of(impl.get()));
        return std::allocate_shared<Item>(allocator, std::move(impl));
    }

   private:
    /// What counts and an item take in all standard libraries, when the counts hold the allocator.
    static constexpr std::size_t ROOM = 5 * sizeof(void*);

    template <class T>
    struct Allocator
    {
        using value_type = T;
        static constexpr bool FITS = sizeof(T) <= ROOM;

        explicit Allocator(ItemMemory* place) noexcept : memory(place) {}
        template <class U>
        Allocator(const Allocator<U>& other) noexcept : memory(other.memory)
        {
        }

        T* allocate(std::size_t count)
        {
            static_assert(alignof(T) <= alignof(void*));
            if (!FITS || count != 1) return std::allocator<T>().allocate(count);
            memory->m_isTaken = true;
            return reinterpret_cast<T*>(memory->m_item);
        }

        void deallocate(T* place, std::size_t count) noexcept
        {
            if (!FITS || count != 1)
                std::allocator<T>().deallocate(place, count);
            else
                delete memory;
        }

        bool operator==(const Allocator& other) const noexcept = default;

        ItemMemory* memory;
    };

    static ItemMemory* of(void* impl) noexcept { return static_cast<ItemMemory*>(impl); }

    alignas(Impl) std::byte m_impl[sizeof(Impl)];
    bool m_isTaken = false;
    alignas(void*) std::byte m_item[ROOM];
};

}  // namespace Oxa_1_1::detail
