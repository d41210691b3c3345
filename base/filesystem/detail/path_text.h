#pragma once

#include "base/string/oxa_string.h"

/// What is allowed in the parts of paths.
namespace Oxa_1_1::detail
{

inline constexpr Char SEPARATOR = '\\';

constexpr bool isDots(TextView name) noexcept { return name == OXA_TEXT(".") || name == OXA_TEXT(".."); }

/// The control characters and * ? < > : " \ / |.
bool isForbiddenInNames(Char c) noexcept;

/// Whether it can be one part of a path; "." and ".." can.
bool isValidComponent(TextView name) noexcept;

/// Whether it can be the name of a file.
inline bool isValidFileName(TextView name) noexcept { return isValidComponent(name) && !isDots(name); }

/// Whether it can be searched for: a name in which wildcards may stand.
bool isValidSearchString(TextView pattern) noexcept;

/// A name, split at its last period.
struct SplitName
{
    String baseName;
    /// Present and empty without a period.
    String extension;
};
SplitName splitName(TextView name);

/// Reports a message in which %ls stands for the text.
void reportText(const Char* format, const String& text);

/// Reports a message of two lines: what failed on the path (%ls) and the text of the thread's last error (%ls).
void reportFailure(const Char* format, const String& path);

inline constexpr const Char* INVALID_CHARACTERS = OXA_TEXT("The path or file name '%ls' contains invalid characters.");

}  // namespace Oxa_1_1::detail
