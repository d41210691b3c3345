// Removes a folder with everything in it, or a file. Of a link, the link itself.

#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/first_reason.h"
#include "examples/foldertool/operands.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

/// Says what stays; of a folder, the first file of all that do.
std::string notRemoved(const FileSystemItem& item, const std::string& reason)
{
    const auto* const folder = dynamic_cast<const Directory*>(&item);
    const auto files = folder != nullptr ? folder->collectFiles(OXA_TEXT("*"), true) : std::vector<SharedFile>();
    return text(IDS_NOT_REMOVED, {pathText(files.empty() ? item : *files.front()), reason});
}

}  // namespace

bool commands::remove(const CommandLine& line)
{
    const SharedItem item = existingItem(line.operands[0]);
    const auto folder = std::dynamic_pointer_cast<const Directory>(item);
    if (folder != nullptr && folder->getParent() == nullptr) throw Failure(text(IDS_IS_ROOT, {pathText(*item)}));

    const FirstReason reason;
    const bool isRemoved = folder != nullptr ? folder->remove(true) : item->remove();
    if (!isRemoved) throw Failure(notRemoved(*item, reason.text()));
    print(text(IDS_REMOVED, {pathText(*item)}));
    return true;
}

}  // namespace foldertool
