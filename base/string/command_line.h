#pragma once

#include <vector>

#include "base/export.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// The arguments that the process was started with, its program first, whatever main() was given: whole on Windows,
/// too, where the ANSI code page lacks characters. A byte that is no UTF-8 is the unpaired surrogate U+DC00 + byte, as
/// in names of files, so that an argument leads to the file that it names. Empty when the system does not tell.
[[nodiscard]] OXA_API std::vector<String> commandLineArguments();

}  // namespace Oxa_1_1
