#pragma once

#include <optional>

#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/tree_walk.h"
#include "base/filesystem/directory.h"
#include "base/platform/files/tree.h"

namespace Oxa_1_1::detail
{

/// The path of one of the library's own folders, which is where operations on trees begin.
class DiskFolder
{
   public:
    explicit DiskFolder(const Directory& folder);

    /// As the caller wrote it, and absolute. The latter is the former when the current folder is not known.
    /// @{
    const ParsedDirectory& written() const noexcept { return *m_written; }
    const SharedDirectory& absolute() const noexcept { return m_absolute; }
    /// @}

    platform::OpenFolder open(platform::Links links) const;
    /// What lies nearest above it, or it itself, of all that is there; none when the system does not tell.
    platform::OpenFolder openNearest() const;
    /// What it lies in, made if that is missing; none, after a report, when it cannot be made.
    platform::OpenFolder openParent() const;
    /// The way into the open folder that stands here.
    FolderWay way(platform::OpenFolder folder) const { return {std::move(folder), m_absolute}; }

   private:
    SharedDirectory m_written;
    SharedDirectory m_absolute;
};

/// None, with the last error, when the system does not tell.
std::optional<bool> isFolderThere(const Directory& folder);

/// A folder to put something in.
struct OpenTarget
{
    platform::OpenFolder folder;
    /// Where a new one was made.
    platform::OpenFolder parent;
    bool isMade = false;
};
/// Makes the folder if it is missing; none, after a report, when that is not possible.
OpenTarget openOrMake(const Directory& folder);

/// Of what is there of the folder and the folders it really lies in; empty when that cannot be seen.
std::vector<platform::FileIdentity> ancestryOfNearest(const DiskFolder& folder);

bool contains(const std::vector<platform::FileIdentity>& folders, const std::optional<platform::FileIdentity>& folder);

}  // namespace Oxa_1_1::detail
