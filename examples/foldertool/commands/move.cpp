// Moves a folder or file to a new name.

#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"
#include "examples/foldertool/tree.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

TreeReport moveItem(const SharedItem& source, const std::filesystem::path& target, bool overwrite)
{
    const TreeOptions options = stoppable(overwrite);
    if (const auto file = std::dynamic_pointer_cast<const File>(source))
        return moveFile(*file, *newFile(target, *file, overwrite), options);
    const auto folder = std::dynamic_pointer_cast<const Directory>(source);
    return moveTree(*folder, *newFolder(target, *folder, overwrite), options);
}

}  // namespace

bool commands::move(const CommandLine& line)
{
    const SharedItem source = existingItem(line.operands[0]);
    const TreeReport report = moveItem(source, line.operands[1], line.overwrite);
    if (report.isStopped) throw Stopped(text(IDS_INTERRUPTED));
    if (report) print(text(IDS_MOVED, {pathText(*source)}));
    return reportFailures(report, IDS_NOT_MOVED);
}

}  // namespace foldertool
