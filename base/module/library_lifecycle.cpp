// The library's own start and end. It is a module like others, and an extension library of the host framework.

#include "base/module/module_entry.h"
#include "base/platform/modules/host_framework.h"

namespace Oxa_1_1
{

namespace
{

OXA_MADE_FIRST const ModuleEntry::Early early;

}  // namespace

bool attachModule(HINSTANCE handle, std::span<const std::byte> compiledScript)
{
    return ModuleEntry::attach(handle, compiledScript) && platform::attachExtension(handle);
}

void detachModule()
{
    platform::detachExtension();
    ModuleEntry::detach();
}

}  // namespace Oxa_1_1
