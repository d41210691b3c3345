#include "base/formats/resource_list.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace Oxa_1_1::formats
{

namespace
{

/// Numbers for the names, ascending with them, so that a name of any length is compared few times only.
class NameRanks
{
   public:
    explicit NameRanks(const std::deque<Text>& names)
    {
        std::vector<TextView> sorted(names.begin(), names.end());
        const auto key = [](TextView name) { return ResourceKey::text(name); };
        std::sort(sorted.begin(), sorted.end(), [key](TextView a, TextView b) { return compare(key(a), key(b)) < 0; });

        m_ranks.reserve(sorted.size());
        std::uint32_t rank = FIRST_RANK;
        for (std::size_t i = 0; i < sorted.size(); ++i)
        {
            if (i > 0 && compare(key(sorted[i - 1]), key(sorted[i])) != 0) ++rank;
            m_ranks.emplace(sorted[i].data(), rank);
        }
    }

    std::uint32_t operator()(const ResourceKey& key) const
    {
        return key.isText() ? m_ranks.at(key.name.data()) : key.id;
    }

   private:
    /// Behind all numbers.
    static constexpr std::uint32_t FIRST_RANK = 0x10000;

    std::unordered_map<const Char*, std::uint32_t> m_ranks;
};

struct Place
{
    std::uint32_t type;
    std::uint32_t name;
    std::uint16_t language;
    /// Among the entries as they lie in the file.
    std::size_t index;

    auto key() const { return std::tie(type, name, language); }
};

}  // namespace

void ResourceList::sort()
{
    const NameRanks rank(names);
    std::vector<Place> places;
    places.reserve(entries.size());
    for (const ResourceEntry& entry : entries)
        places.push_back({rank(entry.type), rank(entry.name), entry.language, places.size()});

    std::sort(places.begin(), places.end(),
              [](const Place& a, const Place& b)
              { return a.key() != b.key() ? a.key() < b.key() : a.index < b.index; });
    const auto end =
        std::unique(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.key() == b.key(); });
    places.erase(end, places.end());

    std::vector<ResourceEntry> sorted;
    sorted.reserve(places.size());
    for (const Place& place : places) sorted.push_back(entries[place.index]);
    entries = std::move(sorted);
}

}  // namespace Oxa_1_1::formats
