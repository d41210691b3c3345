#pragma once

#include <span>

#include "base/filesystem/windows/detail/item_maker.h"

/// Lists of the library's own implementation. What was read until a failure counts, but the list is a partial one.
namespace Oxa_1_1::detail
{

/// False, after a report, for a text that cannot be searched for.
bool checkSearchString(const String& pattern);

/// Finds what the folder holds and the search string matches, in the system's order.
void listFolder(const Directory& directory, const String& pattern, Kinds kinds, ItemReceiver& receiver);

/// The same for a folder whose entries are the library's own items, and for all folders below it, each complete before
/// the next one beside it. `kinds` come one after the other, each with a look at the search string, which may be none.
void listTree(const SharedDirectory& top, const String& pattern, std::span<const Kinds> kinds, ItemReceiver& receiver);

}  // namespace Oxa_1_1::detail
