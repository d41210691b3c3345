#include "base/platform/windows/modules/data_files.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <utility>

#include "base/platform/modules/module_loader.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

namespace
{

struct DataFile
{
    formats::ResourceIndex resources;
    /// The system may give the same handle again.
    int uses = 1;
};

/// Needed until the last module is gone, which may be after the end of static objects.
struct DataFiles
{
    std::shared_mutex mutex;
    std::map<HINSTANCE, DataFile> files;
};

DataFiles& dataFiles()
{
    static auto* const files = new DataFiles;
    return *files;
}

/// Handles of data files are marked in their lowest bits.
constexpr std::uintptr_t MARKS = 3;

bool isMarked(HINSTANCE file) noexcept { return (reinterpret_cast<std::uintptr_t>(file) & MARKS) != 0; }

/// The bytes of the file, up to the end of its last page.
std::span<const std::byte> mappedBytes(HINSTANCE file)
{
    const auto* const begin = reinterpret_cast<const std::byte*>(reinterpret_cast<std::uintptr_t>(file) & ~MARKS);
    MEMORY_BASIC_INFORMATION region{};
    if (VirtualQuery(begin, &region, sizeof region) == 0) return {};
    return {begin, region.RegionSize};
}

}  // namespace

HINSTANCE openDataFile(TextView path)
{
    const HINSTANCE file = LoadLibraryExW(Text(path).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    // A library that is loaded already for other purposes may be given as it is.
    if (file == nullptr || !isMarked(file)) return file;
    const std::span<const std::byte> bytes = mappedBytes(file);
    std::optional<formats::ResourceIndex> resources;
    if (bytes.size() <= MAX_DATA_FILE) resources = formats::ResourceIndex::fromPortableExecutable(bytes);
    if (!resources)
    {
        FreeLibrary(file);
        return nullptr;
    }
    const std::lock_guard guard(dataFiles().mutex);
    const auto [place, isNew] = dataFiles().files.try_emplace(file, DataFile{std::move(*resources)});
    if (!isNew) ++place->second.uses;
    return file;
}

void closeDataFile(HINSTANCE file) noexcept
{
    {
        const std::lock_guard guard(dataFiles().mutex);
        const auto place = dataFiles().files.find(file);
        if (place != dataFiles().files.end() && --place->second.uses == 0) dataFiles().files.erase(place);
    }
    FreeLibrary(file);
}

const formats::ResourceIndex* resourcesOfDataFile(HINSTANCE file) noexcept
{
    if (!isMarked(file)) return nullptr;
    const std::shared_lock guard(dataFiles().mutex);
    const auto place = dataFiles().files.find(file);
    return place != dataFiles().files.end() ? &place->second.resources : nullptr;
}

}  // namespace Oxa_1_1::platform
