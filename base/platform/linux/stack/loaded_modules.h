#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "base/platform/stack/symbols.h"

/// The modules of this process, as the loader lists them.
namespace Oxa_1_1::platform
{

/// Adds to a number that tells things apart.
constexpr std::uint64_t mix(std::uint64_t stamp, std::uint64_t value)
{
    stamp = (stamp ^ value) * 0x9E3779B97F4A7C15U;
    return stamp ^ stamp >> 29;
}
inline std::uint64_t mix(std::uint64_t stamp, std::string_view text)
{
    return mix(stamp, std::hash<std::string_view>()(text));
}

struct LoadedModule
{
    ModuleStamp place{};
    /// Of the loader, and valid as long as the module is loaded; the program's is empty.
    const char* loaderName = "";
    /// Where its headers lie.
    const void* headers = nullptr;

    bool contains(std::uint64_t address) const { return address >= place.begin && address < place.end; }
};

/// False when no module lies there.
bool findModule(std::uint64_t address, LoadedModule& module);

/// Changes when modules come or go.
std::uint64_t loaderGeneration();

/// What was loaded when it was last asked.
class ModuleList
{
   public:
    /// Lists the modules when others have come or gone.
    void refresh();
    const std::vector<LoadedModule>& modules() const { return m_modules; }

   private:
    struct Update;

    /// How many modules the loader had loaded and unloaded by then.
    /// @{
    std::uint64_t m_loaded = 0;
    std::uint64_t m_unloaded = 0;
    /// @}
    std::vector<LoadedModule> m_modules;
};

}  // namespace Oxa_1_1::platform
