#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "base/formats/bytes.h"
#include "base/formats/resource_index.h"

namespace Oxa_1_1::formats
{

/// The resources of a file in the order in which they lie there.
struct ResourceList
{
    std::vector<ResourceEntry> entries;
    /// Copies of the names, since those in the file may lie at odd addresses. A deque leaves them where they are.
    std::deque<Text> names;

    ResourceKey addName(Text&& name) { return ResourceKey::text(names.emplace_back(std::move(name))); }

    /// Sorts by type, name and language; of equal ones only the first stays.
    void sort();
};

std::optional<ResourceList> readRes(Bytes bytes);
std::optional<ResourceList> readPortableExecutable(Bytes bytes);

}  // namespace Oxa_1_1::formats
