#pragma once

#include "base/export.h"
#include "base/module/module.h"

namespace Oxa_1_1
{

/// Lets the host framework take its resources from a module, or from the module's translation, until the end of the
/// scope. To be destroyed on the thread that made it, in reverse order.
class OXA_API ScopedResourceDomain
{
   public:
    /// Takes resources from the module's translation, or from the module itself without one or unless `useTranslation`.
    explicit ScopedResourceDomain(const Module& module = getThisModule(), bool useTranslation = true);
    ScopedResourceDomain(const ScopedResourceDomain&) = delete;
    ScopedResourceDomain& operator=(const ScopedResourceDomain&) = delete;
    ~ScopedResourceDomain();

    /// The handle that the calling thread's framework takes its resources from.
    static HINSTANCE current() noexcept;

   private:
    HINSTANCE m_saved;
};

static_assert(sizeof(ScopedResourceDomain) == sizeof(HINSTANCE));

}  // namespace Oxa_1_1
