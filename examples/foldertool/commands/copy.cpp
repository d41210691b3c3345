// Copies a folder with everything in it, or a file, to a new name.

#include <utility>

#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/copy_progress.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"
#include "examples/foldertool/tree.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

bool copyFile(const File& source, const File& target, bool overwrite)
{
    unsigned long long bytes = 0;
    source.size(bytes);
    ProgressBar bar;
    const bool isCopied = target.createParentDirectories() &&
                          source.copy(target, overwrite, std::make_shared<CopyProgress>(bar, bytes)) == 0;
    if (!isCopied) throw Failure(text(IDS_NOT_COPIED, {pathText(source), lastReason()}));
    bar.clear();
    print(copySummary(1, bytes, bar.elapsed()));
    return true;
}

}  // namespace

FolderCopy copyFolder(const Directory& source, const Directory& target, bool overwrite)
{
    ProgressBar bar;
    std::uint64_t files = 0;
    TreeOptions options = stoppable(overwrite,
                                    [&](const TreeProgress& progress)
                                    {
                                        files = progress.totalFiles;
                                        bar.show(progress);
                                    });
    options.countFirst = true;
    const TreeReport report = copyTree(source, target, options);
    bar.clear();
    if (report.isStopped)
        throw Stopped(text(IDS_COPY_INTERRUPTED, {numberText(report.files), counted(IDS_ONE_FILE, files)}));
    std::string summary = copySummary(report.files, report.bytes, bar.elapsed());
    return {reportFailures(report, IDS_NOT_COPIED), std::move(summary)};
}

bool commands::copy(const CommandLine& line)
{
    const SharedItem source = existingItem(line.operands[0]);
    if (const auto file = std::dynamic_pointer_cast<const File>(source))
        return copyFile(*file, *newFile(line.operands[1], *file, line.overwrite), line.overwrite);
    const SharedFolder folder = existingFolder(line.operands[0]);
    const FolderCopy copied =
        copyFolder(*folder, *newFolder(line.operands[1], *folder, line.overwrite), line.overwrite);
    print(copied.summary);
    return copied.isWhole;
}

}  // namespace foldertool
