#include "base/filesystem/windows/detail/folder_list.h"

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/wildcard.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

bool checkSearchString(const String& pattern)
{
    if (isValidSearchString(pattern)) return true;
    refuseText(OXA_TEXT("The file or directory search string '%ls' contains invalid characters."), pattern);
    return false;
}

void listFolder(const Directory& directory, const String& pattern, Kinds kinds, ItemReceiver& receiver)
{
    const ItemMaker maker(directory, kinds);
    const auto reader = platform::openFolder(maker.pathToRead());
    if (reader == nullptr)
    {
        if (!saysMissing(platform::lastError())) ListScope::setPartial();
        return;
    }
    const Wildcard wildcard(pattern);
    const platform::EntryKinds kindsToRead = maker.kindsToRead();
    platform::FolderEntry entry;
    while (reader->nextOf(entry, kindsToRead))
    {
        if (!wildcard.matches(entry.name)) continue;
        const bool isUnknown = platform::isUnknown(entry.kind);
        if (isUnknown) ListScope::setUnsure();
        if (!isUnknown || kinds != Kinds::DIRECTORIES) maker.make(entry, receiver);
    }
    if (platform::lastError() == platform::NO_MORE_FILES) return;
    platform::noteFailedStep("nextEntry", maker.pathToRead());
    ListScope::setPartial();
}

}  // namespace Oxa_1_1::detail
