#pragma once

#include <concepts>
#include <memory>
#include <type_traits>

#include "base/object/base_node.h"
#include "base/object/smart_ptr.h"
#include "base/object/uz_class.h"

namespace Oxa_1_1
{

/// What owns a new instance: a SmartPtr for nodes, a std::shared_ptr for all other classes.
template <class T>
using CreatedPointer = std::conditional_t<std::is_base_of_v<BaseNode, T>, SmartPtr<T>, std::shared_ptr<T>>;

/// The record of a class that knows how its instances are made.
template <class T>
class CreateableUZClass : public uZClass
{
   public:
    using uZClass::uZClass;
};

/// The ability to make instances of T, a second base of such a record.
template <class T>
class CreateableFromClass
{
   public:
    CreateableFromClass() = default;
    CreateableFromClass(const CreateableFromClass&) = delete;
    CreateableFromClass& operator=(const CreateableFromClass&) = delete;
    virtual ~CreateableFromClass() = default;

    /// A new instance; empty when T cannot be made from its record alone.
    virtual CreatedPointer<T> create() const = 0;
};

/// Makes instances of T for those who ask for a Base, be it T itself; a record may have several. Without a
/// constructor of T that is open and takes nothing, it makes none.
template <class Base, class T>
class Makes : public CreateableFromClass<Base>
{
   public:
    /// A new T; empty when it cannot be made.
    CreatedPointer<Base> create() const override
    {
        if constexpr (!requires { new T(); })
            return nullptr;
        else if constexpr (std::is_base_of_v<BaseNode, T>)
            return makeNode<T>();
        else
            return std::make_shared<T>();
    }
};

/// A new instance of the class that `record` stands for, as a T. Empty when the record is null, makes no T itself, or
/// T cannot be made from its record alone.
template <class T>
CreatedPointer<T> createFromClass(const uZClass* record)
{
    if (record == nullptr || !uZClass::hasRunTimeType(*record)) return nullptr;
    const auto* const creator = dynamic_cast<const CreateableFromClass<T>*>(record);
    return creator != nullptr ? creator->create() : nullptr;
}

/// A new node of the class that `record` stands for, whatever it is. Empty when the record is null, makes no nodes, or
/// what it makes is no T. The record has to make a BaseNode, as every ClassRecord of nodes does.
template <class T = BaseNode>
SmartPtr<T> createNode(const uZClass* record)
{
    SmartPtr<BaseNode> node = createFromClass<BaseNode>(record);
    if constexpr (std::is_same_v<T, BaseNode>)
        return node;
    else
        return dynamicPointerCast<T>(node);
}

}  // namespace Oxa_1_1
