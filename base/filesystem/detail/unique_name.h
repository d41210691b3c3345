#pragma once

#include "base/platform/system/last_error.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1::detail
{

/// A name that nobody else has, as far as chance goes: `prefix`, sixteen digits that cannot be guessed, ".tmp". Whoever
/// makes the item finds out, and asks again.
String uniqueName(const String& prefix);

/// What making a new item fails with when there is one of that name.
inline constexpr DWORD NAME_IS_TAKEN = platform::FILE_EXISTS;
bool saysTaken(DWORD error) noexcept;

/// Calls `make` with new names until it is true. False, with its last error, when it fails for another reason than the
/// name.
template <class Make>
bool makeWithUniqueName(const String& prefix, const Make& make)
{
    // Chance repeats a name hardly once; more often somebody makes it fail on purpose.
    constexpr int ATTEMPTS = 100;
    for (int attempt = 0; attempt < ATTEMPTS; ++attempt)
    {
        if (make(uniqueName(prefix))) return true;
        if (!saysTaken(platform::lastError())) return false;
    }
    return false;
}

}  // namespace Oxa_1_1::detail
