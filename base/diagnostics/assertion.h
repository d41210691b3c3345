#pragma once

#include "base/export.h"

/// @file
/// Assertions, which one handler of the process gets.

// The names are those that the suite's modules are built against.
// NOLINTBEGIN(bugprone-reserved-identifier)

/// Takes a failed assertion: the expression, a message, the file, its line and the function. Any text may be null.
using AssertionFailureHandler = void (*)(const char* expression, const char* message, const char* file,
                                         unsigned int line, const char* function);

/// Reports a failed assertion to the handler of the process. One assertion is handled at a time: what fails meanwhile,
/// on any thread or in the handler itself, is dropped without a trace.
OXA_API void __assert_fail_x(const char* expression, const char* message, const char* file, unsigned int line,
                             const char* function);

/// The handler that gets failed assertions; null when they are silenced. At first it is the default handler, which
/// writes a report and the stack to the debugger's output and asks the user whether to end the program (with exit code
/// 3, without clean-up), to stop in the debugger, or to go on and pass over this line from now on.
OXA_API AssertionFailureHandler __get_assertion_failure_handler();

/// Replaces the handler. Null silences assertions. A call of the former handler that is under way is finished.
OXA_API void __set_assertion_failure_handler(AssertionFailureHandler handler);

// NOLINTEND(bugprone-reserved-identifier)

// Macros, because only they know the text of the expression and the place. They check in every build; define
// OXA_NO_ASSERTIONS before including this header to leave the checks (and the evaluation of the expression) out.
#ifdef OXA_NO_ASSERTIONS
#define OXA_ASSERT_MSG(expression, message) static_cast<void>(sizeof((expression) ? 1 : 0))
#define OXA_ASSERT(expression) OXA_ASSERT_MSG(expression, nullptr)
#else
/// Reports when `expression` is false; `message`, a narrow text or null, is added to the report.
#define OXA_ASSERT_MSG(expression, message) \
    ((expression) ? static_cast<void>(0)    \
                  : ::__assert_fail_x(#expression, (message), __FILE__, __LINE__, static_cast<const char*>(__func__)))
/// Reports when `expression` is false.
#define OXA_ASSERT(expression)           \
    ((expression) ? static_cast<void>(0) \
                  : ::__assert_fail_x(#expression, nullptr, __FILE__, __LINE__, static_cast<const char*>(__func__)))
#endif
