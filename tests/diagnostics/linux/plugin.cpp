#include "tests/diagnostics/plugin.h"

#include <dlfcn.h>

#include <filesystem>

namespace Oxa_1_1::test
{

Plugin::Plugin()
    : m_library(dlopen((std::filesystem::read_symlink("/proc/self/exe").parent_path() / "diagnostics.plugin").c_str(),
                       RTLD_NOW)),
      m_call(reinterpret_cast<decltype(m_call)>(dlsym(m_library, "callFromPlugin")))
{
}

Plugin::~Plugin() { dlclose(m_library); }

}  // namespace Oxa_1_1::test
