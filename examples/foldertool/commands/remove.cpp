// Removes a folder with everything in it, or a file. Of a link, the link itself.

#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"
#include "examples/foldertool/tree.h"

namespace foldertool
{

using namespace Oxa_1_1;

bool commands::remove(const CommandLine& line)
{
    const SharedItem item = existingItem(line.operands[0]);
    if (const auto folder = std::dynamic_pointer_cast<const Directory>(item))
    {
        if (folder->getParent() == nullptr) throw Failure(text(IDS_IS_ROOT, {pathText(*item)}));
        const TreeReport report = removeTree(*folder, stoppable(false));
        if (report.isStopped) throw Stopped(text(IDS_INTERRUPTED));
        if (!reportFailures(report, IDS_NOT_REMOVED)) return false;
    }
    else if (!item->remove())
    {
        throw Failure(text(IDS_NOT_REMOVED, {pathText(*item), lastReason()}));
    }
    print(text(IDS_REMOVED, {pathText(*item)}));
    return true;
}

}  // namespace foldertool
