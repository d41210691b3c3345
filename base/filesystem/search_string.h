#pragma once

#include "base/export.h"
#include "base/string/oxa_string.h"

/// @file
/// The rules of search strings, for implementations of folders. See Oxa_1_1::Directory.

namespace Oxa_1_1
{

/// Whether it can be searched for.
OXA_API bool isValidSearchString(const String& pattern) noexcept;

/// Whether the search string matches a name.
OXA_API bool matchesSearchString(const String& name, const String& pattern);

}  // namespace Oxa_1_1
