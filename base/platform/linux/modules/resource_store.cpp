#include "base/platform/linux/modules/resource_store.h"

#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <utility>

#include "base/platform/linux/files/file_bytes.h"
#include "base/platform/modules/module_loader.h"

namespace Oxa_1_1::platform
{

namespace
{

// ---- Modules: a hash table of fixed size that is read without a lock. A slot keeps its handle for good, so that the
// chains of others stay whole; it is used again when a module is loaded at the same place, or the table is full.

struct Slot
{
    std::atomic<HINSTANCE> module = nullptr;
    std::atomic<const formats::ResourceIndex*> resources = nullptr;
};

constexpr std::size_t SLOTS = 4096;
constinit std::array<Slot, SLOTS> slots;
constinit std::mutex writing;

std::size_t firstSlot(HINSTANCE module) noexcept
{
    return (reinterpret_cast<std::uintptr_t>(module) >> 4) * 0x9E3779B97F4A7C15 >> 52;
}
static_assert(SLOTS == std::size_t{1} << (64 - 52));

/// Calls visit(slot) along the chain of a module until it returns true; null when it never does.
template <class Visit>
Slot* findInChain(HINSTANCE module, const Visit& visit) noexcept
{
    for (std::size_t i = 0; i < SLOTS; ++i)
    {
        Slot& slot = slots[(firstSlot(module) + i) % SLOTS];
        const HINSTANCE owner = slot.module.load(std::memory_order_acquire);
        if (visit(slot, owner)) return &slot;
        if (owner == nullptr) return nullptr;
    }
    return nullptr;
}

Slot* slotOf(HINSTANCE module) noexcept
{
    return findInChain(module, [module](const Slot&, HINSTANCE owner) { return owner == module; });
}

Slot* freeSlotFor(HINSTANCE module) noexcept
{
    return findInChain(module, [](const Slot& slot, HINSTANCE owner)
                       { return owner == nullptr || slot.resources.load(std::memory_order_relaxed) == nullptr; });
}

// ---- Data files: the handle is the address of what is known of it, marked in its lowest bit, as the system's own
// loader marks such handles on Windows. They are read, not mapped: others may cut them short meanwhile.

struct DataFile
{
    std::vector<std::byte> bytes;
    formats::ResourceIndex resources;
};

constexpr std::uintptr_t DATA_FILE_MARK = 1;

DataFile* dataFileOf(HINSTANCE module) noexcept
{
    return reinterpret_cast<DataFile*>(reinterpret_cast<std::uintptr_t>(module) & ~DATA_FILE_MARK);
}

}  // namespace

const formats::ResourceIndex* resourcesOf(HINSTANCE module) noexcept
{
    // As elsewhere null stands for the program.
    if (module == nullptr) module = programModule();
    if (isDataFile(module)) return &dataFileOf(module)->resources;
    const Slot* const slot = slotOf(module);
    return slot != nullptr ? slot->resources.load(std::memory_order_acquire) : nullptr;
}

void setResources(HINSTANCE module, std::unique_ptr<const formats::ResourceIndex> resources)
{
    if (module == nullptr) return;
    const std::lock_guard guard(writing);
    Slot* slot = slotOf(module);
    if (slot == nullptr && resources == nullptr) return;
    if (slot == nullptr) slot = freeSlotFor(module);
    if (slot == nullptr) return;
    const std::unique_ptr<const formats::ResourceIndex> former(slot->resources.exchange(resources.release()));
    slot->module.store(module, std::memory_order_release);
}

std::vector<HINSTANCE> modulesWithResources()
{
    std::vector<HINSTANCE> modules;
    for (const Slot& slot : slots)
        if (slot.resources.load(std::memory_order_acquire) != nullptr) modules.push_back(slot.module);
    return modules;
}

HINSTANCE openDataFile(const std::string& nativePath)
{
    std::optional<std::vector<std::byte>> bytes = readFileBytes(nativePath, MAX_DATA_FILE);
    if (!bytes) return nullptr;
    std::optional<formats::ResourceIndex> resources = formats::ResourceIndex::fromPortableExecutable(*bytes);
    if (!resources) return nullptr;
    // The bytes keep their place when they change hands.
    auto* const known = new DataFile{std::move(*bytes), std::move(*resources)};
    return reinterpret_cast<HINSTANCE>(reinterpret_cast<std::uintptr_t>(known) | DATA_FILE_MARK);
}

bool isDataFile(HINSTANCE module) noexcept { return (reinterpret_cast<std::uintptr_t>(module) & DATA_FILE_MARK) != 0; }

void closeDataFile(HINSTANCE module) noexcept { delete dataFileOf(module); }

}  // namespace Oxa_1_1::platform
