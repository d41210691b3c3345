#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/platform/files/files.h"

/// Whole trees of folders, of any implementation.
namespace Oxa_1_1::detail
{

/// What lies in a folder and below it, each folder before what it holds. Links are part of it; what they lead to is
/// not.
struct FolderTree
{
    std::vector<std::shared_ptr<const File>> files;
    std::vector<std::shared_ptr<const Directory>> directories;
    /// False when not all of it could be seen.
    bool isWhole = true;
};

FolderTree readTree(const Directory& directory);

/// None when it is not there, or of an implementation whose folders have only their names.
std::optional<platform::FileIdentity> readIdentity(const Directory& directory);

/// Of the folder and of those it really lies in; empty as above.
std::vector<platform::FileIdentity> readAncestry(const Directory& directory);

/// Whether both stand for the same folder.
bool isSameFolder(const Directory& a, const Directory& b);

/// Whether it is the folder or in it: wherever links on its path lead, or by its path where there are only names.
bool isSameOrInside(const Directory& directory, const Directory& folder);

/// Folders that were made for others, whose permissions they get. As long as they are filled, their owner may do
/// everything in them.
class MadeFolders
{
   public:
    void add(std::shared_ptr<const Directory> made, std::shared_ptr<const Directory> from);
    void finish() const;

   private:
    struct Pair
    {
        std::shared_ptr<const Directory> made;
        std::shared_ptr<const Directory> from;
    };
    std::vector<Pair> m_pairs;
};

/// Whether everything in the folder can come to `target` without any of it being lost on the way: neither lies in the
/// other where that would remove it, and files of the one implementation can become files of the other.
bool canMoveTree(const Directory& folder, const FolderTree& tree, const Directory& target, bool emptyTarget);

/// Whether it is a link (or junction) itself.
bool isLinkItself(const Directory& directory);

/// Whether it is a link to a folder that it lies in, so that a walk through it would never end.
bool leadsToAncestor(const Directory& directory);

/// The place in `target` of a folder in `folder`; null when it has none.
std::shared_ptr<const Directory> placeIn(const Directory& target, const Directory& folder, const Directory& inside);

}  // namespace Oxa_1_1::detail
