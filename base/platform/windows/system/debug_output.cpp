#include "base/platform/system/debug_output.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

void writeDebugOutput(const Char* text)
{
    if (text != nullptr) OutputDebugStringW(text);
}

void writeDebugOutput(const char* text)
{
    if (text != nullptr) OutputDebugStringA(text);
}

void breakIntoDebugger() { DebugBreak(); }

void leaveCoreFile() {}

}  // namespace Oxa_1_1::platform
