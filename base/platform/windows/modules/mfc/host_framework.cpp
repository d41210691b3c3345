#include "base/platform/modules/host_framework.h"

#include <afxwin.h>
// Behind the framework's header, which it builds on.
#include <afxdllx.h>

#include <memory>

namespace Oxa_1_1::platform
{

namespace
{

AFX_EXTENSION_MODULE extension;
std::unique_ptr<CDynLinkLibrary> library;

}  // namespace

bool attachExtension(HINSTANCE handle)
{
    extension = {};
    if (AfxInitExtensionModule(extension, handle) == 0) return false;
    library.reset(new CDynLinkLibrary(extension, FALSE));
    return library != nullptr;
}

void detachExtension() noexcept
{
    library.reset();
    AfxTermExtensionModule(extension, FALSE);
}

HINSTANCE currentResourceHandle() noexcept { return AfxGetModuleState()->m_hCurrentResourceHandle; }

void setCurrentResourceHandle(HINSTANCE module) noexcept { AfxGetModuleState()->m_hCurrentResourceHandle = module; }

}  // namespace Oxa_1_1::platform
