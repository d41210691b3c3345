#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/string/oxa_string.h"

/// What is allowed in the parts of paths.
namespace Oxa_1_1::detail
{

inline constexpr Char SEPARATOR = '\\';

/// Whether it is "." or "..". Asked of each part of each path, so that nothing is compared in a loop.
constexpr bool isDots(TextView name) noexcept
{
    return (name.size() == 1 || name.size() == 2) && name.front() == '.' && name.back() == '.';
}

/// Where a unit below 0x80 must not stand.
enum Refusal : std::uint8_t
{
    IN_NAMES = 1,
    IN_PATTERNS = 2
};

inline constexpr auto REFUSALS = []
{
    std::array<std::uint8_t, 0x80> refusals{};
    for (std::size_t c = 0; c < 0x20; ++c) refusals[c] = IN_NAMES | IN_PATTERNS;
    for (const Char c : TextView(OXA_TEXT("<>:\"\\/|"))) refusals[c] = IN_NAMES | IN_PATTERNS;
    refusals['*'] = refusals['?'] = IN_NAMES;
    return refusals;
}();

constexpr bool isRefused(Char c, Refusal refusal) noexcept
{
    return c < REFUSALS.size() && (REFUSALS[c] & refusal) != 0;
}

/// The control characters and * ? < > : " \ / |.
constexpr bool isForbiddenInNames(Char c) noexcept { return isRefused(c, IN_NAMES); }

/// Whether it can be one part of a path; "." and ".." can.
bool isValidComponent(TextView name) noexcept;

/// Whether it can be the name of a file.
inline bool isValidFileName(TextView name) noexcept { return isValidComponent(name) && !isDots(name); }

/// Whether it can be searched for: a name in which wildcards may stand.
bool isValidSearchString(TextView pattern) noexcept;

/// A name, split at its last period.
struct SplitName
{
    TextView baseName;
    /// Empty without a period.
    TextView extension;
};
SplitName splitName(TextView name) noexcept;

/// Reports a message in which %ls stands for the text.
void reportText(const Char* format, const String& text);

/// The same of a text that is no path, which is why something fails.
void refuseText(const Char* format, const String& text);
/// Leaves only the reason.
void noteRefusal(const String& text) noexcept;

/// Reports a message of two lines: what failed on the path (%ls) and the text of the thread's last error (%ls).
void reportFailure(const Char* format, const String& path);

/// Reports that a file could not be moved, with the text of the thread's last error. False, always.
bool reportFailedMove(const String& source, const String& target);

inline constexpr const Char* INVALID_CHARACTERS = OXA_TEXT("The path or file name '%ls' contains invalid characters.");

}  // namespace Oxa_1_1::detail
