#include "base/object/base_node.h"

#include <cstddef>
#include <type_traits>

#include "base/module/module.h"
#include "base/object/creatable_class.h"
#include "base/platform/never_destroyed.h"

namespace Oxa_1_1
{

// The last owner must not touch the node once its reference is dropped: a watcher may revive the node in between, drop
// it again and so destroy it. Hence a reference that seems to be the last is dropped under the mutex of the handle,
// in one step with giving up the node. Until then the owner's own reference keeps node and handle alive.

SmartPtr<BaseNode> WeakHandle::lock()
{
    const std::lock_guard guard(m_mutex);
    if (m_node == nullptr) return {};
    m_node->ref();
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

BaseNode::~BaseNode() = default;

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

void BaseNode::unrefContended(unsigned int count) const noexcept
{
    for (;;)
    {
        if (count != 1)
        {
            if (m_counter.compareExchange(count, count - 1)) return;
            continue;
        }
        switch (m_handle->dropLast(m_counter))
        {
            case WeakHandle::Drop::LAST:
                m_counter = DEAD;
                delete this;
                return;
            case WeakHandle::Drop::ORPHANED:
                return;
            case WeakHandle::Drop::REFUSED:
                count = m_counter;
        }
    }
}

WeakHandle::Drop WeakHandle::dropLast(InterlockedCounter& counter)
{
    const std::lock_guard guard(m_mutex);
    unsigned int count = 1;
    if (!counter.compareExchange(count, 0)) return Drop::REFUSED;
    if (m_node == nullptr) return Drop::ORPHANED;
    m_node = nullptr;
    return Drop::LAST;
}

/// Modules that were built separately rely on these places.
struct BaseNode::Layout
{
    static_assert(std::is_empty_v<VisitorCore>);
    static_assert(offsetof(BaseNode, m_handle) == sizeof(void*));
    static_assert(offsetof(BaseNode, m_counter) == sizeof(void*) + sizeof(m_handle));
};

}  // namespace Oxa_1_1
