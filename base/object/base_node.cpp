#include "base/object/base_node.h"

#include <chrono>
#include <cstddef>
#include <thread>
#include <type_traits>
#include <utility>

#include "base/module/module.h"
#include "base/object/creatable_class.h"
#include "base/platform/never_destroyed.h"

namespace Oxa_1_1
{

// Who drops the last reference still needs the node, to come to its handle. A watcher may revive the node meanwhile,
// and drop it again: then two are on their way, and the first of them must not destroy the node, which the second one
// still needs. Hence revivals are counted: as many of those who come find the node revived and leave it alone, and
// whoever comes when none is left is the last. A counter of 0 is no end for a node that nobody has owned yet.

/// Has the handle for itself. Mostly nobody else wants it, and then to release it is a plain store, which a mutex
/// cannot do. Of those who wait all but one sleep in the mutex.
class WeakHandle::Guard
{
   public:
    explicit Guard(WeakHandle& handle) : m_handle(handle)
    {
        if (!take()) [[unlikely]]
            wait();
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    ~Guard() { m_handle.m_isBusy.store(false, std::memory_order_release); }

   private:
    bool take() { return !m_handle.m_isBusy.exchange(true, std::memory_order_acquire); }

    void wait()
    {
        const std::lock_guard queue(m_handle.m_mutex);
        // Whoever has the handle needs a few instructions more, unless it was put to sleep among them.
        constexpr int PATIENCE = 64;
        for (int i = 0; !take(); ++i)
            if (i < PATIENCE)
                std::this_thread::yield();
            else
                std::this_thread::sleep_for(std::chrono::microseconds(50));
    }

    WeakHandle& m_handle;
};

SmartPtr<BaseNode> WeakHandle::lock()
{
    const Guard guard(*this);
    if (m_node == nullptr) return {};
    if (m_node->m_counter++ == 0 && m_isOwned.exchange(true, std::memory_order_relaxed)) ++m_revivals;
    return SmartPtr<BaseNode>::adopt(m_node);
}

bool WeakHandle::tryDestroy()
{
    const Guard guard(*this);
    if (m_node == nullptr) return false;
    const unsigned int count = m_node->m_counter;
    if (count != 0 && count != BaseNode::DEAD) return false;
    m_node = nullptr;
    return true;
}

BaseNode::BaseNode() : m_handle(std::make_shared<WeakHandle>(this)) {}

BaseNode::~BaseNode()
{
    // One that its last owner destroys has been given up already.
    if (m_counter != DEAD) m_handle->forget();
}

void BaseNode::validityCheck(unsigned int) const noexcept {}

const uZClass* BaseNode::getClassType() const { return Class(); }

const uZClass* BaseNode::Class()
{
    class BaseClass final : public CreateableUZClass<BaseNode>, public CreateableFromClass<BaseNode>
    {
       public:
        BaseClass() : CreateableUZClass(OXA_TEXT("BaseNode"), getThisModule(), ClassVersion()) {}
        SmartPtr<BaseNode> create() const override { return makeNode<BaseNode>(); }
    };
    static const platform::NeverDestroyed<BaseClass> record;
    return &record.get();
}

void BaseNode::destroy() const noexcept
{
    if (!m_handle->giveUp()) return;
    // Nobody else reaches it any more, so that a plain copy will do.
    m_counter = InterlockedCounter(static_cast<int>(DEAD));
    delete this;
}

bool WeakHandle::giveUp() noexcept
{
    // Without watchers nobody else can come by.
    if (!m_isWatched.load(std::memory_order_relaxed)) return giveUpUnowned();
    const Guard guard(*this);
    if (m_revivals == 0) return giveUpUnowned();
    --m_revivals;
    return false;
}

bool WeakHandle::giveUpUnowned() noexcept
{
    // Somebody with a plain pointer may have become an owner again.
    if (m_node == nullptr || m_node->m_counter != 0) return false;
    m_node = nullptr;
    return true;
}

void WeakHandle::forget() noexcept
{
    const Guard guard(*this);
    m_node = nullptr;
}

/// Modules that were built separately rely on these places.
struct BaseNode::Layout
{
    static_assert(std::is_empty_v<VisitorCore>);
    static_assert(offsetof(BaseNode, m_handle) == sizeof(void*));
    static_assert(offsetof(BaseNode, m_counter) == sizeof(void*) + sizeof(m_handle));
};

}  // namespace Oxa_1_1
