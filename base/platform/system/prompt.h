#pragma once

#include "base/char.h"

/// Questions to the user.
namespace Oxa_1_1::platform
{

enum class Answer
{
    Abort,
    Retry,
    Ignore
};

/// Shows `text` and lets the user choose. Abort when the system has no way to ask: on Linux the process then has no
/// controlling terminal, on Windows no message box can be shown. A text that was written to the debugger's output is
/// not shown again where the user sees that output anyway.
Answer askAbortRetryIgnore(const Char* text, const Char* caption, bool isWritten);

}  // namespace Oxa_1_1::platform
