#include "base/platform/windows/stack/debug_help.h"

#include "base/platform/system/system_info.h"

namespace Oxa_1_1::platform
{

namespace
{

bool exists(const std::string& file) { return GetFileAttributesA(file.c_str()) != INVALID_FILE_ATTRIBUTES; }

Library loadFirst()
{
    const std::string program = programFile();
    if (exists(program + ".local"))
    {
        Library library(program.substr(0, program.find_last_of('\\') + 1) + "dbghelp.dll");
        if (library.isLoaded()) return library;
    }
    const std::string programs = environmentVariable("ProgramFiles");
    for (const char* const folder : {"\\Debugging Tools for Windows", "\\Debugging Tools for Windows 64-Bit"})
    {
        const std::string file = programs + folder + "\\dbghelp.dll";
        if (programs.empty() || !exists(file)) continue;
        Library library(file);
        if (library.isLoaded()) return library;
    }
    return Library("dbghelp.dll");
}

}  // namespace

DebugHelp::DebugHelp() : m_library(loadFirst())
{
    m_isComplete = m_library.find("SymInitialize", symInitialize) && m_library.find("SymCleanup", symCleanup) &&
                   m_library.find("StackWalk64", stackWalk64) && m_library.find("SymGetOptions", symGetOptions) &&
                   m_library.find("SymSetOptions", symSetOptions) &&
                   m_library.find("SymFunctionTableAccess64", symFunctionTableAccess64) &&
                   m_library.find("SymGetLineFromAddr64", symGetLineFromAddr64) &&
                   m_library.find("SymGetModuleBase64", symGetModuleBase64) &&
                   m_library.find("SymGetModuleInfo64", symGetModuleInfo64) &&
                   m_library.find("SymGetSymFromAddr64", symGetSymFromAddr64) &&
                   m_library.find("UnDecorateSymbolName", unDecorateSymbolName) &&
                   m_library.find("SymLoadModule64", symLoadModule64) &&
                   m_library.find("SymGetSearchPath", symGetSearchPath);
}

}  // namespace Oxa_1_1::platform
