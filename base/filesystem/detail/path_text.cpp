#include "base/filesystem/detail/path_text.h"

#include <algorithm>

#include "base/diagnostics/windows_error.h"
#include "base/filesystem/file_system_item.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

bool endsBadly(TextView name) noexcept { return name.back() == ' ' || name.back() == '.'; }

}  // namespace

bool isValidComponent(TextView name) noexcept
{
    if (name.empty()) return false;
    if (endsBadly(name)) return isDots(name);
    // Nearly all are valid, so that looking at all of them is faster than stopping at the first one that is not.
    unsigned refusals = 0;
    for (const Char c : name) refusals |= c < REFUSALS.size() ? REFUSALS[c] : 0U;
    return (refusals & IN_NAMES) == 0;
}

bool isValidSearchString(TextView pattern) noexcept
{
    if (pattern.empty() || endsBadly(pattern)) return false;
    return std::ranges::none_of(pattern, [](Char c) { return isRefused(c, IN_PATTERNS); });
}

SplitName splitName(TextView name) noexcept
{
    const std::size_t period = name.rfind(OXA_TEXT('.'));
    if (period == TextView::npos) return {.baseName = name, .extension = {}};
    return {.baseName = name.substr(0, period), .extension = name.substr(period + 1)};
}

void reportText(const Char* format, const String& text)
{
    String message;
    message.printf_apply(format, text.stringPath());
    FileSystemItem::reportError(message);
}

void refuseText(const Char* format, const String& text)
{
    noteRefusal(text);
    reportText(format, text);
}

void noteRefusal(const String& text) noexcept
{
    // The system had no part in it.
    const DWORD former = platform::lastError();
    platform::failStep(platform::BAD_PATH, "parsePath", text);
    platform::setLastError(former);
}

void reportFailure(const Char* format, const String& path)
{
    const String reason = getWindowsError(platform::lastError());
    String message;
    message.printf_apply(format, path.stringPath(), reason.stringPath());
    FileSystemItem::reportError(message);
}

bool reportFailedMove(const String& source, const String& target)
{
    const String reason = getWindowsError(platform::lastError());
    String message = OXA_TEXT("Failed to move file '");
    message << source << OXA_TEXT("' to file '") << target << OXA_TEXT("' because: ") << reason;
    FileSystemItem::reportError(message);
    return false;
}

}  // namespace Oxa_1_1::detail
