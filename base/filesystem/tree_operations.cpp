#include "base/filesystem/tree_operations.h"

#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/tree_deletion.h"
#include "base/filesystem/detail/tree_transfer.h"
#include "base/filesystem/detail/tree_work.h"
#include "base/filesystem/links.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

namespace
{

using detail::DiskFolder;
using detail::TreeTransfer;
using detail::TreeWork;

template <class... Items>
bool areOwn(TreeWork& work, const Items&... items)
{
    const auto isOwn = [&](const auto& item)
    {
        if (detail::windowsImpl(item) != nullptr) return true;
        work.fail("open", item.getFullName(), platform::NOT_SUPPORTED);
        return false;
    };
    return (isOwn(items) && ...);
}

}  // namespace

TreeReport copyTree(const Directory& source, const Directory& target, const TreeOptions& options)
{
    TreeWork work(options);
    if (!areOwn(work, source, target)) return work.finish();
    work.count(source, options.links);
    TreeTransfer(work, TreeTransfer::Mode::COPY).copyFolder(DiskFolder(source), DiskFolder(target));
    return work.finish();
}

TreeReport removeTree(const Directory& folder, const TreeOptions& options)
{
    TreeWork work(options);
    if (!areOwn(work, folder)) return work.finish();
    work.count(folder, LinkHandling::Keep, TreeWork::Counted::FILES);
    detail::TreeDeletion(work).run(DiskFolder(folder));
    return work.finish();
}

TreeReport moveTree(const Directory& folder, const Directory& target, const TreeOptions& options)
{
    TreeWork work(options);
    if (!areOwn(work, folder, target)) return work.finish();
    TreeTransfer transfer(work, TreeTransfer::Mode::MOVE);
    if (isLink(folder) && folder.getParent() != nullptr && target.getParent() != nullptr)
    {
        transfer.moveEntry(DiskFolder(*folder.getParent()), folder.getName(), DiskFolder(*target.getParent()),
                           target.getName());
        return work.finish();
    }
    work.count(folder, LinkHandling::Keep);
    transfer.moveFolder(DiskFolder(folder), DiskFolder(target));
    return work.finish();
}

TreeReport moveFile(const File& file, const File& target, const TreeOptions& options)
{
    TreeWork work(options);
    if (!areOwn(work, file, target)) return work.finish();
    TreeTransfer(work, TreeTransfer::Mode::MOVE)
        .moveEntry(DiskFolder(*file.getDirectory()), file.getName(), DiskFolder(*target.getDirectory()),
                   target.getName());
    return work.finish();
}

}  // namespace Oxa_1_1
