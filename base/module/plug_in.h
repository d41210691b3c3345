#pragma once

#include <memory>

#include "base/export.h"
#include "base/module/module.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// A module that is loaded while the program runs, held by a value: copies share it, and the last of them unloads it.
/// What the module made (nodes, records, code) must be gone by then, unless it is kept.
///
///     String reason;
///     if (const PlugIn plugIn = PlugIn::load(OXA_TEXT("C:\\scans\\export.dll"), reason))
///         plugIn.function<void()>("exportAll")();
class OXA_API PlugIn
{
   public:
    /// Holds nothing.
    PlugIn() noexcept = default;

    /// Loads the file; holds nothing when it does not load, with the reason as the system tells it.
    /// @{
    [[nodiscard]] static PlugIn load(const String& file);
    [[nodiscard]] static PlugIn load(const String& file, String& reason);
    /// @}

    /// Whether a module is held.
    explicit operator bool() const noexcept { return m_library != nullptr; }
    /// Its handle; null when none is held.
    HINSTANCE getInstance() const noexcept { return static_cast<HINSTANCE>(m_library.get()); }
    /// Its record in the list of modules; null when it has none.
    const Module* module() const noexcept;

    /// What it exports under the name; null when it exports no such thing, for null, or when none is held.
    void* symbol(const char* name) const noexcept;
    /// The same as a function, as in function<int(double)>("measure").
    template <class Function>
    Function* function(const char* name) const noexcept
    {
        return reinterpret_cast<Function*>(symbol(name));
    }

    /// Leaves the module loaded until the process ends, whoever lets go of it.
    void keep() const noexcept;

   private:
    std::shared_ptr<void> m_library;
};

}  // namespace Oxa_1_1
