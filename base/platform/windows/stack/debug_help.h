#pragma once

#include "base/platform/windows/modules/library.h"
// The system's header must come first.
#include <dbghelp.h>

namespace Oxa_1_1::platform
{

/// The debug-help library, found at run time, and its entry points.
class DebugHelp
{
   public:
    /// Loads the first library that is found: beside a program that is redirected by a ".local" file, in the folders of
    /// the debugging tools, and where the system looks.
    DebugHelp();

    /// False when the library or one of its entry points is missing; the last error then tells why.
    bool isComplete() const { return m_isComplete; }

    // Named and typed as the system declares them.
    decltype(&::SymInitialize) symInitialize = nullptr;
    decltype(&::SymCleanup) symCleanup = nullptr;
    decltype(&::StackWalk64) stackWalk64 = nullptr;
    decltype(&::SymGetOptions) symGetOptions = nullptr;
    decltype(&::SymSetOptions) symSetOptions = nullptr;
    decltype(&::SymFunctionTableAccess64) symFunctionTableAccess64 = nullptr;
    decltype(&::SymGetLineFromAddr64) symGetLineFromAddr64 = nullptr;
    decltype(&::SymGetModuleBase64) symGetModuleBase64 = nullptr;
    decltype(&::SymGetModuleInfo64) symGetModuleInfo64 = nullptr;
    decltype(&::SymGetSymFromAddr64) symGetSymFromAddr64 = nullptr;
    decltype(&::UnDecorateSymbolName) unDecorateSymbolName = nullptr;
    decltype(&::SymLoadModule64) symLoadModule64 = nullptr;
    decltype(&::SymGetSearchPath) symGetSearchPath = nullptr;

   private:
    Library m_library;
    bool m_isComplete = false;
};

}  // namespace Oxa_1_1::platform
