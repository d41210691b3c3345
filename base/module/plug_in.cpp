#include "base/module/plug_in.h"

#include "base/platform/modules/module_loader.h"

namespace Oxa_1_1
{

PlugIn PlugIn::load(const String& file)
{
    String reason;
    return load(file, reason);
}

PlugIn PlugIn::load(const String& file, String& reason)
{
    Text error;
    PlugIn plugIn;
    if (const HINSTANCE library = platform::loadModule(file.view(), error))
        plugIn.m_library.reset(library, [](HINSTANCE loaded) { platform::freeModule(loaded); });
    else
        reason = String(error);
    return plugIn;
}

const Module* PlugIn::module() const noexcept
{
    if (m_library == nullptr) return nullptr;
    for (const Module& module : Module::all())
        if (module.getInstance() == getInstance()) return &module;
    return nullptr;
}

void* PlugIn::symbol(const char* name) const noexcept
{
    return m_library != nullptr && name != nullptr ? platform::findSymbol(getInstance(), name) : nullptr;
}

void PlugIn::keep() const noexcept
{
    // One more holder, who never lets go.
    if (m_library != nullptr) platform::keepModule(getInstance());
}

}  // namespace Oxa_1_1
