#include "base/filesystem/search_string.h"

#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/wildcard.h"

namespace Oxa_1_1
{

bool isValidSearchString(const String& pattern) noexcept { return detail::isValidSearchString(pattern); }

bool matchesSearchString(const String& name, const String& pattern) { return detail::Wildcard(pattern).matches(name); }

}  // namespace Oxa_1_1
