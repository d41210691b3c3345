// Tells how large a folder or file is.

#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"
#include "examples/foldertool/tree.h"

namespace foldertool
{

using namespace Oxa_1_1;

bool commands::size(const CommandLine& line)
{
    const SharedItem item = existingItem(line.operands[0]);
    if (std::dynamic_pointer_cast<const Directory>(item) != nullptr)
    {
        const TreeTotals totals = measure(*existingFolder(line.operands[0]));
        print(summary(totals));
        return totals.isWhole;
    }
    unsigned long long bytes = 0;
    if (!item->size(bytes)) throw Failure(text(IDS_REASON, {pathText(*item), lastReason()}));
    print(byteText(bytes));
    return true;
}

}  // namespace foldertool
