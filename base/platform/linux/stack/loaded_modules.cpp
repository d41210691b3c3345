#include "base/platform/linux/stack/loaded_modules.h"

#include <link.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <utility>

namespace Oxa_1_1::platform
{

namespace
{

/// The identification of a build among the notes of a loaded module; empty without one.
std::string_view buildIdIn(const char* notes, std::size_t size)
{
    constexpr std::uint32_t BUILD_ID = 3;
    while (size >= sizeof(ElfW(Nhdr)))
    {
        ElfW(Nhdr) note;
        std::memcpy(&note, notes, sizeof note);
        const std::size_t nameSize = (std::size_t{note.n_namesz} + 3) / 4 * 4;
        const std::size_t whole = sizeof note + nameSize + (std::size_t{note.n_descsz} + 3) / 4 * 4;
        if (whole > size) break;
        if (note.n_type == BUILD_ID && note.n_namesz == 4 && std::memcmp(notes + sizeof note, "GNU", 4) == 0)
            return {notes + sizeof note + nameSize, note.n_descsz};
        notes += whole;
        size -= whole;
    }
    return {};
}

LoadedModule describe(const dl_phdr_info& info)
{
    std::uint64_t begin = UINT64_MAX;
    std::uint64_t end = 0;
    LoadedModule module;
    module.headers = info.dlpi_phdr;
    if (info.dlpi_name != nullptr) module.loaderName = info.dlpi_name;
    std::uint64_t stamp = mix(info.dlpi_addr, module.loaderName);
    for (const ElfW(Phdr) & segment : std::span(info.dlpi_phdr, info.dlpi_phnum))
    {
        if (segment.p_type == PT_NOTE)
            stamp =
                mix(stamp, buildIdIn(reinterpret_cast<const char*>(info.dlpi_addr + segment.p_vaddr), segment.p_memsz));
        if (segment.p_type != PT_LOAD) continue;
        stamp = mix(stamp, segment.p_filesz);
        begin = std::min<std::uint64_t>(begin, segment.p_vaddr);
        end = std::max<std::uint64_t>(end, segment.p_vaddr + segment.p_memsz);
    }
    constexpr std::uint64_t PAGE = 4096;
    if (end > begin) module.place = {info.dlpi_addr + begin / PAGE * PAGE, info.dlpi_addr + end, stamp};
    return module;
}

}  // namespace

bool findModule(std::uint64_t address, LoadedModule& module)
{
    struct Search
    {
        std::uint64_t address;
        LoadedModule& module;
    } search{address, module};
    const auto look = [](dl_phdr_info* info, std::size_t, void* data)
    {
        auto& wanted = *static_cast<Search*>(data);
        const LoadedModule found = describe(*info);
        if (!found.contains(wanted.address)) return 0;
        wanted.module = found;
        return 1;
    };
    return ::dl_iterate_phdr(look, &search) != 0;
}

std::uint64_t loaderGeneration()
{
    std::uint64_t generation = 0;
    const auto read = [](dl_phdr_info* info, std::size_t, void* result)
    {
        *static_cast<std::uint64_t*>(result) = info->dlpi_adds + info->dlpi_subs;
        return 1;
    };
    ::dl_iterate_phdr(read, &generation);
    return generation;
}

/// The list that is being made. The loader keeps its order, so what was known comes in the order of the former list.
struct ModuleList::Update
{
    const ModuleList& former;
    std::vector<LoadedModule> modules;
    std::uint64_t loaded = 0;
    std::uint64_t unloaded = 0;
    std::size_t next = 0;

    /// What is at the same place may be another module only when some came and some went.
    const LoadedModule* known(const dl_phdr_info& info)
    {
        if (loaded != former.m_loaded && unloaded != former.m_unloaded) return nullptr;
        for (std::size_t i = next; i < former.m_modules.size(); ++i)
        {
            if (former.m_modules[i].headers != info.dlpi_phdr) continue;
            next = i + 1;
            return &former.m_modules[i];
        }
        return nullptr;
    }
};

void ModuleList::refresh()
{
    Update update{*this, {}};
    update.modules.reserve(m_modules.size() + 8);
    const auto add = [](dl_phdr_info* info, std::size_t, void* data)
    {
        auto& list = *static_cast<Update*>(data);
        list.loaded = info->dlpi_adds;
        list.unloaded = info->dlpi_subs;
        const bool isAsBefore = list.loaded == list.former.m_loaded && list.unloaded == list.former.m_unloaded;
        if (isAsBefore && !list.former.m_modules.empty()) return 1;
        const LoadedModule* const known = list.known(*info);
        list.modules.push_back(known != nullptr ? *known : describe(*info));
        return 0;
    };
    if (::dl_iterate_phdr(add, &update) != 0) return;
    m_modules = std::move(update.modules);
    m_loaded = update.loaded;
    m_unloaded = update.unloaded;
}

}  // namespace Oxa_1_1::platform
