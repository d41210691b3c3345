#pragma once

#include <memory>

#include "base/char.h"
#include "base/export.h"
#include "base/object/interlocked_counter.h"
#include "base/object/smart_ptr.h"
#include "base/object/uz_class.h"
#include "base/object/visitor_core.h"
#include "base/object/weak_handle.h"

namespace Oxa_1_1
{

class Module;

/// Root of the reference-counted objects. A node counts its owners itself (see SmartPtr) and offers one shared
/// WeakHandle to those who watch it without owning it. Nodes are made by new, never deleted but by their last owner;
/// one that was never owned is never destroyed.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): protected, so that only the last owner deletes a node.
class OXA_API BaseNode : public VisitorCore
{
   public:
    /// Counts that mean something else.
    enum ReservedCounter : unsigned int
    {
        /// Of a node whose destruction is decided.
        DEAD = 0xF000DEAD
    };

    /// Unowned: the counter is 0.
    BaseNode();
    BaseNode(const BaseNode&) = delete;
    BaseNode& operator=(const BaseNode&) = delete;

    /// The class record "BaseNode".
    static const uZClass* Class();
    /// The class record of the dynamic type: derived classes give their own.
    virtual const uZClass* getClassType() const;

   protected:
    virtual ~BaseNode();

   public:
    /// The number of owners, for diagnostics: it may be outdated at once. DEAD while the node is being destroyed.
    unsigned int getRefCounter() const noexcept { return m_counter; }
    /// What watches the node without owning it: the same handle for all who ask.
    std::weak_ptr<WeakHandle> getWeakHandle() const noexcept
    {
        m_handle->m_isWatched.store(true, std::memory_order_relaxed);
        return m_handle;
    }

    /// Name and version of the node's class, as its record has them.
    /// @{
    const Char* getClassName() const { return getClassType()->name; }
    ClassVersion getClassVersion() const { return getClassType()->version; }
    /// @}
    /// The code module that defines the node's class.
    const Module& getCodeModule() const { return *getClassType()->module; }
    /// Whether the node's class is `other` or derived from it; false for null.
    bool isKindOf(const uZClass* other) const { return getClassType()->isDerivedFrom(other); }
    /// The same for the class of a T.
    template <class T>
    bool isKindOf() const
    {
        return isKindOf(T::Class());
    }

    /// A hook for debug builds of clients; does nothing here.
    void validityCheck(unsigned int tag) const noexcept;

   private:
    template <class T>
    friend class SmartPtr;
    friend class WeakHandle;

    void ref() const noexcept
    {
        if (m_counter++ == 0) m_handle->m_isOwned.store(true, std::memory_order_relaxed);
    }
    void unref() const noexcept
    {
        if (--m_counter == 0) destroy();
    }
    void destroy() const noexcept;
    struct Layout;

    std::shared_ptr<WeakHandle> m_handle;
    mutable InterlockedCounter m_counter;
};

}  // namespace Oxa_1_1
