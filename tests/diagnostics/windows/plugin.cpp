#include "tests/diagnostics/plugin.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::test
{

Plugin::Plugin()
    : m_library(LoadLibraryA("diagnostics.plugin")),
      m_call(reinterpret_cast<decltype(m_call)>(
          reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(m_library), "callFromPlugin"))))
{
}

Plugin::~Plugin() { FreeLibrary(static_cast<HMODULE>(m_library)); }

}  // namespace Oxa_1_1::test
