#include "base/platform/system/shell.h"

#include "base/platform/system/detail/native_shell.h"
#include "base/platform/windows/windows_api.h"
// These stand on the one before.
#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

namespace Oxa_1_1::platform::native
{

namespace
{

/// The component library, for a call that needs it.
class Components
{
   public:
    Components() : m_result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;
    ~Components()
    {
        if (SUCCEEDED(m_result)) CoUninitialize();
    }

   private:
    HRESULT m_result;
};

bool select(const Text& path)
{
    const Components components;
    LPITEMIDLIST const items = ILCreateFromPathW(path.c_str());
    if (items == nullptr) return false;
    const HRESULT result = SHOpenFolderAndSelectItems(items, 0, nullptr, 0);
    ILFree(items);
    return SUCCEEDED(result);
}

}  // namespace

std::intptr_t askShell(const ShellRequest& request)
{
    if (request.isSelection) return select(request.path) ? SHELL_SUCCESS : 0;
    return reinterpret_cast<std::intptr_t>(
        ShellExecuteW(nullptr, request.verb, request.path.c_str(), nullptr, request.workingFolder, request.show));
}

}  // namespace Oxa_1_1::platform::native
