#pragma once

#include <concepts>
#include <memory>

#include "base/object/base_node.h"
#include "base/object/smart_ptr.h"

namespace Oxa_1_1
{

/// Watches a node without keeping it alive, or is empty: a WeakHandle that knows the node's class.
///
///     WeakPtr<Scan> watched = scan;
///     if (SmartPtr<Scan> alive = watched.lock()) ...
///
/// As with SmartPtr, one WeakPtr must not be changed by two threads at once; the node may be owned by any.
template <class T>
class WeakPtr
{
   public:
    using element_type = T;  ///< The class of the node.

    /// Empty.
    constexpr WeakPtr() noexcept = default;
    /// Watches the node; empty for null.
    /// @{
    WeakPtr(T* node) noexcept : m_node(node)
    {
        if (node != nullptr) m_handle = node->getWeakHandle();
    }
    template <class U>
    requires std::convertible_to<U*, T*> WeakPtr(const SmartPtr<U>& node)
    noexcept : WeakPtr(static_cast<T*>(node.get())) {}
    /// @}
    /// Watches the same node, which may be gone already: so T must not be a virtual base, whose place only a living
    /// node knows.
    template <class U>
    requires(std::convertible_to<U*, T*>&& requires(T* node) { static_cast<const U*>(node); })
        WeakPtr(const WeakPtr<U>& other)
    noexcept : m_node(other.m_node), m_handle(other.m_handle) {}

    /// An owner of the node; empty when the node is gone or going.
    SmartPtr<T> lock() const
    {
        const std::shared_ptr<WeakHandle> handle = m_handle.lock();
        if (handle == nullptr) return {};
        SmartPtr<BaseNode> node = handle->lock();
        // The reference changes hands; it is not counted again.
        return node.detach() != nullptr ? SmartPtr<T>::adopt(m_node) : SmartPtr<T>();
    }
    /// Whether the node is certainly gone; true when empty.
    bool expired() const noexcept { return m_handle.expired(); }
    /// Watches nothing any more.
    void reset() noexcept { *this = WeakPtr(); }

   private:
    template <class U>
    friend class WeakPtr;

    T* m_node = nullptr;
    std::weak_ptr<WeakHandle> m_handle;
};

}  // namespace Oxa_1_1
