#pragma once

#include <cstddef>
#include <span>

#include "base/export.h"
#include "base/module/module.h"
#include "base/module/module_start.h"

/// @file
/// What makes a program or shared library a module of the suite: its own record, and start-up code that initialises it
/// when the module is loaded and terminates it when it is unloaded. The CMake function oxa_add_module() adds all of it.

namespace Oxa_1_1
{

/// Makes a compiled resource script that is embedded in a module known, on systems whose modules have no resources of
/// their own. The bytes must stay until they are withdrawn.
/// @{
OXA_API void offerModuleResources(HINSTANCE handle, std::span<const std::byte> compiledScript);
OXA_API void withdrawModuleResources(HINSTANCE handle) noexcept;
/// @}

/// Access of the start-up code to the record of the module that it is compiled into.
class ModuleEntry
{
   public:
    /// The record, made on first use.
    OXA_HIDDEN static Module& record()
    {
        static Module module;
        return module;
    }

    /// Initialises the record, with the resources that are embedded in the module, if any. False, and without effect,
    /// for a null handle and when the record is initialised already.
    OXA_HIDDEN static bool attach(HINSTANCE handle, std::span<const std::byte> compiledScript = {})
    {
        if (handle == nullptr || record().m_initialized) return false;
        offerModuleResources(handle, compiledScript);
        return record().internalInit(handle);
    }

    /// Makes the record at once. The start-up code does so first of all, so that the record is there until the last
    /// static object of the module is gone.
    struct Early
    {
        OXA_HIDDEN Early() { record(); }
    };

    /// Terminates the record; nothing happens when it is not initialised. The resources stay until the record is
    /// destroyed, so that the destructors of static objects still have texts.
    OXA_HIDDEN static void detach() { record().internalTerm(); }
};

/// The record of the module that the call is compiled into.
OXA_HIDDEN inline const Module& ownModule() { return ModuleEntry::record(); }

}  // namespace Oxa_1_1
