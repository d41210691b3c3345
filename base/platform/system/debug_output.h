#pragma once

#include "base/char.h"

/// What a debugger sees.
namespace Oxa_1_1::platform
{

/// Writes to the debugger's output; standard error on Linux. Null writes nothing.
void writeDebugOutput(const Char* text);
/// The same for text in the system's narrow encoding.
void writeDebugOutput(const char* text);

/// Stops in the debugger. On Linux nothing happens when none is attached.
void breakIntoDebugger();

/// Leaves a core file of the process, as it is, where the system is set to write some; the process goes on. Nothing on
/// Windows, whose error reporting takes faults only.
void leaveCoreFile();

}  // namespace Oxa_1_1::platform
