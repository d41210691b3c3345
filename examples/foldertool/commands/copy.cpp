// Copies a folder with everything in it, or a file, to a new name.

#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"
#include "examples/foldertool/tree_copy.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

bool copyFolder(const SharedFolder& source, const Directory& target, bool overwrite)
{
    const Tree tree = readTree(source);
    const auto progress = std::make_shared<CopyProgress>(tree.bytes);
    try
    {
        const bool isWhole = copyTree(tree, target, overwrite, progress);
        print(summary(*progress));
        return reportProblems(tree) && isWhole;
    }
    catch (const Stopped&)
    {
        progress->clear();
        throw Stopped(text(IDS_COPY_INTERRUPTED,
                           {numberText(progress->copiedFiles()), counted(IDS_ONE_FILE, tree.files.size())}));
    }
}

bool copyFile(const File& source, const File& target, bool overwrite)
{
    unsigned long long bytes = 0;
    source.size(bytes);
    const auto progress = std::make_shared<CopyProgress>(bytes);
    progress->begin(bytes);
    const bool isCopied = target.createParentDirectories() && source.copy(target, overwrite, progress) == 0;
    if (!isCopied) throw Failure(text(IDS_NOT_COPIED, {pathText(source), lastReason()}));
    progress->end(true);
    progress->clear();
    print(summary(*progress));
    return true;
}

}  // namespace

bool commands::copy(const CommandLine& line)
{
    const SharedItem source = existingItem(line.operands[0]);
    if (const auto file = std::dynamic_pointer_cast<const File>(source))
        return copyFile(*file, *newFile(line.operands[1], *file, line.overwrite), line.overwrite);
    const SharedFolder folder = existingFolder(line.operands[0]);
    return copyFolder(folder, *newFolder(line.operands[1], *folder, line.overwrite), line.overwrite);
}

}  // namespace foldertool
