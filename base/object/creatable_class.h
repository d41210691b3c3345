#pragma once

#include <concepts>
#include <memory>
#include <type_traits>

#include "base/object/smart_ptr.h"
#include "base/object/uz_class.h"

namespace Oxa_1_1
{

class BaseNode;

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

/// A new instance of the class that `record` stands for, as a T. Empty when the record is null, makes no T itself, or
/// T cannot be made from its record alone.
template <class T>
CreatedPointer<T> createFromClass(const uZClass* record)
{
    const auto* const creator = dynamic_cast<const CreateableFromClass<T>*>(record);
    return creator != nullptr ? creator->create() : nullptr;
}

}  // namespace Oxa_1_1
