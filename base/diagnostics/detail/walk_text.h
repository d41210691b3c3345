#pragma once

#include <string>

#include "base/diagnostics/stack_walker.h"
#include "base/platform/system/system_info.h"

/// The lines of text that the stack walker's hooks write. Null texts read as empty.
namespace Oxa_1_1::detail
{

std::string searchPathLine(const char* searchPath, DWORD options, const char* userName);
std::string systemLine(const platform::SystemVersion& version);
std::string moduleLine(const char* file, const char* name, DWORD64 base, DWORD size, DWORD result,
                       const char* symbolType, const char* symbolFile, ULONGLONG fileVersion);
std::string frameLine(const StackWalker::CallstackEntry& entry);
std::string errorLine(const char* function, DWORD code, DWORD64 address);

}  // namespace Oxa_1_1::detail
