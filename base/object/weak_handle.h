#pragma once

#include <atomic>
#include <mutex>

#include "base/export.h"
#include "base/object/smart_ptr.h"

namespace Oxa_1_1
{

class BaseNode;

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
    class OXA_HIDDEN Guard;

    /// Gives the node up, if the caller, who dropped its last reference, is to destroy it.
    OXA_HIDDEN bool giveUp() noexcept;
    OXA_HIDDEN bool giveUpUnowned() noexcept;
    /// Gives the node up, whatever its counter says.
    OXA_HIDDEN void forget() noexcept;

    BaseNode* m_node;
    // Those who find the handle busy line up here.
    std::mutex m_mutex;
    /// How many have dropped the last reference, but found their node revived before they came here to give it up.
    unsigned int m_revivals = 0;
    std::atomic<bool> m_isBusy = false;
    /// Whether the node has had an owner, and whether anybody has asked for this handle. Each is set while the node is
    /// held, so that who drops the last reference sees it.
    /// @{
    std::atomic<bool> m_isOwned = false;
    std::atomic<bool> m_isWatched = false;
    /// @}
};

}  // namespace Oxa_1_1
