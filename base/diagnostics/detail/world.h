#pragma once

#include "base/diagnostics/hooks.h"

/// The system as diagnostics see it: through the hooks, where there are any.
namespace Oxa_1_1::detail
{

void writeDebugText(const Char* text);
/// The same for text in the system's narrow encoding.
void writeDebugText(const char* text);
/// Asks under the program's name.
AssertionAnswer askUser(const Char* text);
void breakIntoDebugger();

}  // namespace Oxa_1_1::detail
