#pragma once

#include "base/diagnostics/hooks.h"

/// The system as diagnostics see it: through the hooks, where there are any.
namespace Oxa_1_1::detail
{

void writeDebugText(const Char* text);
/// The same for text in the system's narrow encoding.
void writeDebugText(const char* text);
/// Writes a text that is a paragraph of its own; on the system's output a line feed follows it. False when a hook took
/// it.
bool writeParagraph(const Char* text);
/// Asks under the program's name. `isWritten`: the text went to the system's debug output just now.
AssertionAnswer askUser(const Char* text, bool isWritten);
void breakIntoDebugger();

}  // namespace Oxa_1_1::detail
