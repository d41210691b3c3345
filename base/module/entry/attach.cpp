// Compiled into every module: its start and end are those of its record.

#include "base/module/module_entry.h"

namespace Oxa_1_1
{

namespace
{

OXA_MADE_FIRST const ModuleEntry::Early early;

}  // namespace

bool attachModule(HINSTANCE handle, std::span<const std::byte> compiledScript)
{
    return ModuleEntry::attach(handle, compiledScript);
}

void detachModule() { ModuleEntry::detach(); }

}  // namespace Oxa_1_1
