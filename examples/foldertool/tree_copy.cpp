#include "examples/foldertool/tree_copy.h"

#include "examples/foldertool/failure.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

constexpr int DISK_FULL = 221;

std::string notCopied(const FileSystemItem& item) { return text(IDS_NOT_COPIED, {pathText(item), lastReason()}); }

void makeFolder(const Directory& folder)
{
    if (!folder.create()) throw Failure(text(IDS_NOT_MADE, {pathText(folder), lastReason()}));
}

}  // namespace

bool copyTree(const Tree& tree, const Directory& target, bool overwrite, const std::shared_ptr<CopyProgress>& progress)
{
    bool isWhole = true;
    makeFolder(target);
    for (const SharedFolder& folder : tree.folders) makeFolder(*target.combine(*folder->makeRelative(*tree.root)));
    for (const Tree::Entry& entry : tree.files)
    {
        const SharedFile place = target.combine(*entry.file->makeRelative(*tree.root));
        progress->begin(entry.bytes);
        const int code = entry.file->copy(*place, overwrite, progress);
        progress->end(code == 0);
        if (code == DISK_FULL) throw Failure(notCopied(*entry.file));
        if (code == 0) continue;
        const std::string message = notCopied(*entry.file);
        progress->clear();
        complain(message);
        isWhole = false;
    }
    progress->clear();
    return isWhole;
}

std::string summary(const CopyProgress& progress)
{
    return text(IDS_COPIED, {counted(IDS_ONE_FILE, progress.copiedFiles()), byteText(progress.copiedBytes()),
                             rateText(progress.copiedBytes(), progress.elapsed())});
}

}  // namespace foldertool
