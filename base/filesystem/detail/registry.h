#pragma once

#include <list>
#include <memory>
#include <utility>

#include "base/filesystem/detail/held_reports.h"
#include "base/filesystem/detail/items.h"

/// The walk through a registry of creators.
namespace Oxa_1_1::detail
{

/// The item of the first implementation that `create` makes with one of the creators; empty when none does, and only
/// then it is heard why not.
template <class Item, class Creator, class Create>
std::shared_ptr<Item> createItem(const std::list<std::shared_ptr<const Creator>>& creators, Create create)
{
    HeldReports reports;
    for (const auto& creator : creators)
    {
        if (creator == nullptr) continue;
        const std::size_t refusals = reports.count();
        auto impl = create(*creator);
        if (impl == nullptr) continue;
        reports.release(refusals);
        return makeItem(std::move(impl));
    }
    reports.release();
    return nullptr;
}

}  // namespace Oxa_1_1::detail
