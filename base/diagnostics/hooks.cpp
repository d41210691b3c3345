#include "base/diagnostics/hooks.h"

#include <atomic>
#include <string>

#include "base/diagnostics/detail/world.h"
#include "base/platform/system/debug_output.h"
#include "base/platform/system/prompt.h"
#include "base/platform/system/system_info.h"

namespace Oxa_1_1
{

namespace
{

constinit std::atomic<decltype(DiagnosticHooks::debugOutput)> debugOutputHook{nullptr};
constinit std::atomic<decltype(DiagnosticHooks::ask)> askHook{nullptr};
constinit std::atomic<decltype(DiagnosticHooks::debugBreak)> debugBreakHook{nullptr};

Text programName()
{
    const std::string file = platform::programFile();
    return platform::decodeNarrow(file.substr(file.find_last_of(platform::pathSeparator()) + 1));
}

AssertionAnswer answerOf(platform::Answer answer)
{
    switch (answer)
    {
        case platform::Answer::Retry:
            return AssertionAnswer::Retry;
        case platform::Answer::Ignore:
            return AssertionAnswer::Ignore;
        default:
            return AssertionAnswer::Abort;
    }
}

}  // namespace

DiagnosticHooks setDiagnosticHooks(const DiagnosticHooks& hooks) noexcept
{
    DiagnosticHooks former;
    former.debugOutput = debugOutputHook.exchange(hooks.debugOutput);
    former.ask = askHook.exchange(hooks.ask);
    former.debugBreak = debugBreakHook.exchange(hooks.debugBreak);
    return former;
}

namespace detail
{

void writeDebugText(const Char* text)
{
    const auto hook = debugOutputHook.load();
    hook == nullptr ? platform::writeDebugOutput(text) : hook(text);
}

void writeDebugText(const char* text)
{
    const auto hook = debugOutputHook.load();
    hook == nullptr ? platform::writeDebugOutput(text) : hook(platform::decodeNarrow(text).c_str());
}

bool writeParagraph(const Char* text)
{
    const auto hook = debugOutputHook.load();
    if (hook != nullptr)
    {
        hook(text);
        return false;
    }
    platform::writeDebugOutput(text);
    platform::writeDebugOutput("\n");
    return true;
}

AssertionAnswer askUser(const Char* text, bool isWritten)
{
    const Text caption = programName();
    const auto hook = askHook.load();
    if (hook != nullptr) return hook(text, caption.c_str());
    return answerOf(platform::askAbortRetryIgnore(text, caption.c_str(), isWritten));
}

void breakIntoDebugger()
{
    const auto hook = debugBreakHook.load();
    hook == nullptr ? platform::breakIntoDebugger() : hook();
}

}  // namespace detail

}  // namespace Oxa_1_1
