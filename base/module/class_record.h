#pragma once

#include <type_traits>

#include "base/module/module_entry.h"
#include "base/object/base_node.h"
#include "base/object/creatable_class.h"

namespace Oxa_1_1
{

namespace detail
{

/// Stands for a base that is asked for already.
template <int>
struct NoMaker
{
};

/// Makes T for those who ask for T, for its base and for a node.
template <class T, class Base>
struct Makers : Makes<T, T>,
                std::conditional_t<std::is_void_v<Base>, NoMaker<0>, Makes<Base, T>>,
                std::conditional_t<std::is_base_of_v<BaseNode, T> && !std::is_same_v<T, BaseNode> &&
                                       !std::is_same_v<Base, BaseNode>,
                                   Makes<BaseNode, T>, NoMaker<1>>
{
};

}  // namespace detail

/// The record of the class T, derived from that of `Base`; of a root without. It makes instances, as a T, as a Base
/// and, of a node, as a BaseNode, if T has a constructor that is open and takes nothing:
///
///     const uZClass* Scan::Class()
///     {
///         static const ClassRecord<Scan, BaseNode> record(OXA_TEXT("Scan"));
///         return &record;
///     }
template <class T, class Base = void>
class ClassRecord : public CreateableUZClass<T>, public detail::Makers<T, Base>
{
   public:
    /// The name is kept, not copied. The module is the one that the call is compiled into, unless another is given.
    explicit ClassRecord(const Char* className, const ClassVersion& classVersion = {},
                         const Module& definingModule = ownModule())
        : CreateableUZClass<T>(className, baseRecord(), definingModule, classVersion)
    {
    }

   private:
    static const uZClass* baseRecord()
    {
        if constexpr (std::is_void_v<Base>)
            return nullptr;
        else
            return Base::Class();
    }
};

}  // namespace Oxa_1_1
