#pragma once

#include <list>
#include <memory>
#include <utility>

/// The walk through a registry of creators.
namespace Oxa_1_1::detail
{

/// The item of the first implementation that `create` makes with one of the creators; empty when none does.
template <class Item, class Creator, class Create>
std::shared_ptr<Item> createItem(const std::list<std::shared_ptr<const Creator>>& creators, Create create)
{
    for (const auto& creator : creators)
    {
        if (creator == nullptr) continue;
        if (auto impl = create(*creator)) return std::make_shared<Item>(std::move(impl));
    }
    return nullptr;
}

}  // namespace Oxa_1_1::detail
