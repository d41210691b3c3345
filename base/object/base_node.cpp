#include "base/object/base_node.h"

#include <cstddef>
#include <type_traits>
#include <utility>

#include "base/module/module.h"
#include "base/object/creatable_class.h"
#include "base/platform/never_destroyed.h"

namespace Oxa_1_1
{

// Who drops the last reference still needs the node, to give it up and to destroy it. Were a watcher to revive it
// meanwhile, and to drop it again, the node would be gone too early. Hence nobody revives a node that has been owned:
// its last owner destroys it, whatever comes between. A counter of 0 is no end for a node that nobody has owned yet.

SmartPtr<BaseNode> WeakHandle::lock()
{
    const std::lock_guard guard(m_mutex);
    if (m_node == nullptr) return {};
    if (m_node->m_counter++ == 0 && m_isOwned.exchange(true, std::memory_order_relaxed))
    {
        --m_node->m_counter;
        return {};
    }
    return SmartPtr<BaseNode>::adopt(m_node);
}

bool WeakHandle::tryDestroy()
{
    const std::lock_guard guard(m_mutex);
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
    if (m_counter != DEAD) m_handle->giveUp();
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
    if (!m_isWatched.load(std::memory_order_relaxed)) return std::exchange(m_node, nullptr) != nullptr;
    const std::lock_guard guard(m_mutex);
    return std::exchange(m_node, nullptr) != nullptr;
}

/// Modules that were built separately rely on these places.
struct BaseNode::Layout
{
    static_assert(std::is_empty_v<VisitorCore>);
    static_assert(offsetof(BaseNode, m_handle) == sizeof(void*));
    static_assert(offsetof(BaseNode, m_counter) == sizeof(void*) + sizeof(m_handle));
};

}  // namespace Oxa_1_1
