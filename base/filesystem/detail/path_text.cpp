#include "base/filesystem/detail/path_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/diagnostics/windows_error.h"
#include "base/filesystem/file_system_item.h"
#include "base/platform/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

enum Refusal : std::uint8_t
{
    IN_NAMES = 1,
    IN_PATTERNS = 2
};

constexpr auto REFUSALS = []
{
    std::array<std::uint8_t, 0x80> refusals{};
    for (std::size_t c = 0; c < 0x20; ++c) refusals[c] = IN_NAMES | IN_PATTERNS;
    for (const Char c : TextView(OXA_TEXT("<>:\"\\/|"))) refusals[c] = IN_NAMES | IN_PATTERNS;
    refusals['*'] = refusals['?'] = IN_NAMES;
    return refusals;
}();

bool isRefused(Char c, Refusal refusal) noexcept { return c < REFUSALS.size() && (REFUSALS[c] & refusal) != 0; }

bool endsBadly(TextView name) noexcept { return name.back() == ' ' || name.back() == '.'; }

}  // namespace

bool isForbiddenInNames(Char c) noexcept { return isRefused(c, IN_NAMES); }

bool isValidComponent(TextView name) noexcept
{
    if (name.empty()) return false;
    if (isDots(name)) return true;
    return std::ranges::none_of(name, isForbiddenInNames) && !endsBadly(name);
}

bool isValidSearchString(TextView pattern) noexcept
{
    if (pattern.empty() || endsBadly(pattern)) return false;
    return std::ranges::none_of(pattern, [](Char c) { return isRefused(c, IN_PATTERNS); });
}

SplitName splitName(TextView name)
{
    const std::size_t period = name.rfind(OXA_TEXT('.'));
    if (period == TextView::npos) return {name, String::EMPTY};
    return {name.substr(0, period), name.substr(period + 1)};
}

void reportText(const Char* format, const String& text)
{
    String message;
    message.printf_apply(format, text.stringPath());
    FileSystemItem::reportError(message);
}

void reportFailure(const Char* format, const String& path)
{
    const String reason = getWindowsError(platform::lastError());
    String message;
    message.printf_apply(format, path.stringPath(), reason.stringPath());
    FileSystemItem::reportError(message);
}

}  // namespace Oxa_1_1::detail
