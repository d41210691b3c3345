// Tells what is known of a folder or file.

#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/item_info.h"
#include "examples/foldertool/operands.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

bool commands::info(const CommandLine& line)
{
    const SharedItem item = existingItem(line.operands[0]);
    print(pathText(*item));
    for (const std::string& entry : linesOf(infoOf(*item))) print("  " + entry);
    return true;
}

}  // namespace foldertool
