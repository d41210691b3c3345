#pragma once

#include <mutex>

#include "base/export.h"
#include "base/object/smart_ptr.h"

namespace Oxa_1_1
{

class BaseNode;
class InterlockedCounter;

/// Stands for a node without keeping it alive. Every node has one, shared by all who watch the node:
///
///     std::weak_ptr<WeakHandle> watched = node->getWeakHandle();
///     if (auto handle = watched.lock())
///         if (SmartPtr<BaseNode> node = handle->lock()) ...   // Alive, and kept so.
///
/// All operations may be called from any thread.
class OXA_API WeakHandle
{
   public:
    /// Made by the node itself.
    explicit WeakHandle(BaseNode* node) noexcept : m_node(node) {}
    WeakHandle(const WeakHandle&) = delete;
    WeakHandle& operator=(const WeakHandle&) = delete;
    ~WeakHandle() = default;

    /// The node with one more reference; empty when the node is gone or going.
    SmartPtr<BaseNode> lock();

    /// Gives the node up if nobody owns it, and says so: who gets true, once in the node's life, destroys it.
    bool tryDestroy();

   private:
    friend class BaseNode;

    enum class Drop
    {
        LAST,      // Dropped and the node given up: the caller destroys it.
        ORPHANED,  // Dropped, but the node had been given up before.
        REFUSED    // Others have taken references meanwhile; the caller still owns its own.
    };
    /// Drops a reference that was the only one when its owner looked.
    OXA_HIDDEN Drop dropLast(InterlockedCounter& counter);

    BaseNode* m_node;
    std::mutex m_mutex;
};

}  // namespace Oxa_1_1
