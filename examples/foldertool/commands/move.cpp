// Moves a folder or file to a new name.

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

bool moveItem(const SharedItem& source, const std::filesystem::path& target, bool overwrite)
{
    if (const auto file = std::dynamic_pointer_cast<const File>(source))
    {
        const SharedFile place = newFile(target, *file, overwrite);
        return place->createParentDirectories() && file->move(*place, overwrite);
    }
    const auto folder = std::dynamic_pointer_cast<const Directory>(source);
    return folder->move(*newFolder(target, *folder, overwrite), overwrite);
}

}  // namespace

bool commands::move(const CommandLine& line)
{
    const SharedItem source = existingItem(line.operands[0]);
    const FirstReason reason;
    if (!moveItem(source, line.operands[1], line.overwrite))
        throw Failure(text(IDS_NOT_MOVED, {pathText(*source), reason.text()}));
    print(text(IDS_MOVED, {pathText(*source)}));
    return true;
}

}  // namespace foldertool
