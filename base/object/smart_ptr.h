#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <utility>

#include "base/export.h"

namespace Oxa_1_1
{

class BaseNode;

/// Owns one reference of a node (a class derived from BaseNode), or is empty. The node is destroyed when its last
/// owner lets go of it.
///
/// Owners of one node may live in different threads; one SmartPtr must not be changed by two threads at once.
template <class T>
class SmartPtr
{
   public:
    using element_type = T;  ///< The class of the node.

    /// Empty.
    /// @{
    constexpr SmartPtr() noexcept = default;
    constexpr SmartPtr(std::nullptr_t) noexcept {}
    /// @}
    /// Becomes one more owner of the node; empty for null.
    /// @{
    SmartPtr(T* node) noexcept : m_node(node) { ref(); }
    SmartPtr(const SmartPtr& other) noexcept : m_node(other.m_node) { ref(); }
    template <class U>
    requires std::convertible_to<U*, T*> SmartPtr(const SmartPtr<U>& other)
    noexcept : m_node(other.m_node) { ref(); }
    /// @}
    /// Takes over the reference of `other`, which is left empty.
    /// @{
    SmartPtr(SmartPtr&& other) noexcept : m_node(std::exchange(other.m_node, nullptr)) {}
    template <class U>
    requires std::convertible_to<U*, T*> SmartPtr(SmartPtr<U>&& other)
    noexcept : m_node(std::exchange(other.m_node, nullptr)) {}
    /// @}
    /// Takes over a reference that is counted already: of detach(), or of another language's binding.
    static SmartPtr adopt(T* node) noexcept
    {
        SmartPtr result;
        result.m_node = node;
        return result;
    }
    /// Hands the reference over to the caller, who has to adopt() it again; empty from then on.
    [[nodiscard]] T* detach() noexcept { return std::exchange(m_node, nullptr); }
    /// Destroys the node if this was its last owner.
    ~SmartPtr() { unref(); }

    /// The old node is let go of after the new one is held, so a node may hand over to what it owned.
    /// @{
    SmartPtr& operator=(const SmartPtr& other) noexcept
    {
        SmartPtr(other).swap(*this);
        return *this;
    }
    SmartPtr& operator=(SmartPtr&& other) noexcept
    {
        SmartPtr(std::move(other)).swap(*this);
        return *this;
    }
    SmartPtr& operator=(T* node) noexcept
    {
        SmartPtr(node).swap(*this);
        return *this;
    }

    void reset() noexcept { SmartPtr().swap(*this); }
    void reset(T* node) noexcept { SmartPtr(node).swap(*this); }
    /// @}
    /// Exchanges the nodes; no reference is counted.
    /// @{
    void swap(SmartPtr& other) noexcept { std::swap(m_node, other.m_node); }
    friend void swap(SmartPtr& a, SmartPtr& b) noexcept { a.swap(b); }
    /// @}

    /// The node, null when empty; to be dereferenced only when it is not.
    /// @{
    T* get() const noexcept { return m_node; }
    T& operator*() const noexcept { return *m_node; }
    T* operator->() const noexcept { return m_node; }
    /// @}
    /// Whether there is a node.
    explicit operator bool() const noexcept { return m_node != nullptr; }

   private:
    template <class U>
    friend class SmartPtr;

    // Dependent on T, so that a SmartPtr of a class that is only declared can be named.
    template <class>
    struct Root
    {
        using type = BaseNode;
    };
    // Through the root, which alone grants access to the counter.
    void ref() const noexcept
    {
        if (m_node != nullptr) static_cast<const typename Root<T>::type*>(m_node)->ref();
    }
    void unref() const noexcept
    {
        if (m_node != nullptr) static_cast<const typename Root<T>::type*>(m_node)->unref();
    }

    T* m_node = nullptr;
};

/// Identity of the nodes.
/// @{
template <class T, class U>
bool operator==(const SmartPtr<T>& a, const SmartPtr<U>& b) noexcept
{
    return a.get() == b.get();
}
template <class T, class U>
requires std::equality_comparable_with<T*, U*>
bool operator==(const SmartPtr<T>& a, U* b) noexcept { return a.get() == b; }
template <class T>
bool operator==(const SmartPtr<T>& a, std::nullptr_t) noexcept
{
    return a.get() == nullptr;
}
/// @}
/// By address: an order for containers, the same as long as the nodes live.
template <class T, class U>
std::strong_ordering operator<=>(const SmartPtr<T>& a, const SmartPtr<U>& b) noexcept
{
    return std::compare_three_way()(a.get(), b.get());
}

/// The node as a T, unchecked; empty for empty.
template <class T, class U>
SmartPtr<T> staticPointerCast(const SmartPtr<U>& node) noexcept
{
    return static_cast<T*>(node.get());
}
/// The node as a T; empty when it is none.
template <class T, class U>
SmartPtr<T> dynamicPointerCast(const SmartPtr<U>& node) noexcept
{
    return dynamic_cast<T*>(node.get());
}

/// The node without (or with) its const.
template <class T, class U>
SmartPtr<T> constPointerCast(const SmartPtr<U>& node) noexcept
{
    return const_cast<T*>(node.get());
}

/// A new node with its first owner.
template <class T, class... Arguments>
SmartPtr<T> makeNode(Arguments&&... arguments)
{
    return new T(std::forward<Arguments>(arguments)...);
}

}  // namespace Oxa_1_1

/// By address: equal pointers have equal hashes.
template <class T>
struct std::hash<Oxa_1_1::SmartPtr<T>>
{
    /// Of the address.
    std::size_t operator()(const Oxa_1_1::SmartPtr<T>& node) const noexcept { return std::hash<T*>()(node.get()); }
};
