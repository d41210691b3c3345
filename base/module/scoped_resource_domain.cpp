#include "base/module/scoped_resource_domain.h"

#include "base/platform/modules/host_framework.h"

namespace Oxa_1_1
{

ScopedResourceDomain::ScopedResourceDomain(const Module& module, bool useTranslation)
    : m_saved(platform::currentResourceHandle())
{
    platform::setCurrentResourceHandle(module.resourcesFrom(useTranslation));
}

ScopedResourceDomain::~ScopedResourceDomain() { platform::setCurrentResourceHandle(m_saved); }

HINSTANCE ScopedResourceDomain::current() noexcept { return platform::currentResourceHandle(); }

}  // namespace Oxa_1_1
