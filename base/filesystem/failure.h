#pragma once

/// @file
/// Why an operation failed, as a value that programs can decide by.

#include <optional>
#include <string_view>
#include <system_error>

#include "base/export.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// The category of codes that are numbered as on Windows, on every system; its name is "windows". They compare with
/// std::errc, and their messages are in UTF-8.
/// @{
OXA_API const std::error_category& windowsCategory() noexcept;
OXA_API std::error_code makeWindowsError(unsigned long code) noexcept;
/// @}

/// A step that failed.
struct Failure
{
    /// What was tried: "copyFile", "openFolder", "parsePath" and the like; a literal.
    std::string_view operation;
    /// What it was tried on, and for copies and moves what it was to become; else NIL.
    /// @{
    String path;
    String target;
    /// @}
    /// Why.
    std::error_code code;

    /// For people: "copyFile C:\a to C:\b: Access is denied."
    OXA_API String message() const;
};

/// The last step of the library that has failed on this thread: why, right after an operation that answers false, NIL,
/// nothing or a code. Operations that succeed may leave it or set it, as they try what they can do without. Empty when
/// nothing has failed yet, or since it was forgotten.
/// @{
OXA_API std::optional<Failure> lastFailure();
OXA_API void forgetFailure() noexcept;
/// @}

}  // namespace Oxa_1_1
