#pragma once

#include <cstdint>
#include <string>

#include "base/char.h"

/// Facts about this process and its system. Narrow texts are in the system's narrow encoding: the ANSI code page on
/// Windows, UTF-8 on Linux. What cannot be found out is empty.
namespace Oxa_1_1::platform
{

Text decodeNarrow(const std::string& bytes);

/// The running program's file with its folder.
std::string programFile();
/// The current folder of the process as the system spells it (files.h has it as a `String` spells it).
std::string workingFolder();
/// The value of an environment variable; empty when it is not set.
std::string environmentVariable(const char* name);
/// The name of the user whom the process runs for.
std::string userName();
std::uint32_t currentProcessId() noexcept;

/// What stands between the folders of a path.
char pathSeparator() noexcept;

struct SystemVersion
{
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    /// The service pack on Windows, the kernel's full release on Linux.
    std::string description;
    /// Bits of the installed product suites and the kind of product; 0 on Linux.
    std::uint32_t suites = 0;
    std::uint32_t productType = 0;
};

SystemVersion systemVersion();

}  // namespace Oxa_1_1::platform
