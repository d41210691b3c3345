#include "base/module/module_entry.h"

#include "base/platform/modules/module_loader.h"
#include "base/platform/modules/resources.h"

namespace Oxa_1_1
{

HINSTANCE moduleHandleOf(const void* address) noexcept { return platform::moduleOfAddress(address); }

void offerModuleResources(HINSTANCE handle, std::span<const std::byte> compiledScript)
{
    if (!compiledScript.empty()) platform::offerResources(handle, compiledScript);
}

void withdrawModuleResources(HINSTANCE handle) noexcept { platform::withdrawResources(handle); }

}  // namespace Oxa_1_1
