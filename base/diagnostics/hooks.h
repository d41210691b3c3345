#pragma once

#include "base/char.h"
#include "base/export.h"

namespace Oxa_1_1
{

/// What the user answers to a failed assertion.
enum class AssertionAnswer
{
    /// End the program at once.
    Abort,
    /// Stop in the debugger and go on.
    Retry,
    /// Go on, and never ask about this line again.
    Ignore
};

/// Functions that stand in for the system where diagnostics meet the world: for tests, which must not wait for a user,
/// and for programs that have a log or a question of their own. A null member leaves the work to the system.
struct DiagnosticHooks
{
    /// Takes each text that would go to the debugger's output: of a failed assertion the report, then its stack, which
    /// begins with "Call stack:".
    void (*debugOutput)(const Char* text) = nullptr;
    /// Answers for the user who would be shown `text`.
    AssertionAnswer (*ask)(const Char* text, const Char* caption) = nullptr;
    /// Replaces the stop in the debugger.
    void (*debugBreak)() = nullptr;
};

/// Replaces the hooks and returns the former ones. Threads that are just calling a former hook finish the call.
OXA_API DiagnosticHooks setDiagnosticHooks(const DiagnosticHooks& hooks) noexcept;

}  // namespace Oxa_1_1
