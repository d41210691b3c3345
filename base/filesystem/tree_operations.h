#pragma once

/// @file
/// Operations on whole trees that tell what they did. From open folder to open folder: nothing below the top is reached
/// by a path, so that nothing that is exchanged meanwhile leads them elsewhere. For the library's own file system; for
/// items of another one, the report holds a failure with code 50, and nothing is done.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <vector>

#include "base/filesystem/directory.h"
#include "base/filesystem/failure.h"
#include "base/filesystem/file.h"

namespace Oxa_1_1
{

/// Whether a file or link at the target gives way to another one. A folder never does, and nothing does to a folder.
enum class Overwrite
{
    /// It stays, and the report holds a failure with code 80.
    Never,
    /// When it was written earlier, a link as well; else it is skipped.
    IfNewer,
    Always
};

/// What a copy makes of links in its source.
enum class LinkHandling
{
    /// Links are copied as links.
    Keep,
    /// What they lead to is copied. A link that leads nowhere, or round in a circle, is a failure.
    Follow
};

/// How an operation goes on when something fails.
enum class OnFailure
{
    /// With everything else; what failed stays as it was.
    GoOn,
    /// What was done until then stays done.
    Stop,
    /// Takes back what this call made, moved and replaced, and nothing else; also when it is stopped by its token or an
    /// exception of the receiver. What is removed cannot be taken back: for removeTree() it is as Stop.
    RollBack
};

/// How far an operation is, with what needed nothing to be done.
struct TreeProgress
{
    /// Files and links that are done or skipped.
    std::uint64_t files = 0;
    /// Of content that is copied or skipped.
    std::uint64_t bytes = 0;
    /// 0 unless TreeOptions::countFirst. Removing has no bytes.
    /// @{
    std::uint64_t totalFiles = 0;
    std::uint64_t totalBytes = 0;
    /// @}
};

/// How an operation goes about its work.
struct TreeOptions
{
    /// What may give way at the target.
    Overwrite overwrite = Overwrite::Never;
    /// For copies; moving and removing take links themselves.
    LinkHandling links = LinkHandling::Keep;
    /// Whether the rest is done, too.
    OnFailure onFailure = OnFailure::GoOn;
    /// Of copies, as far as the system lets this user set them.
    /// @{
    bool keepPermissions = true;
    bool keepTimes = true;
    /// @}
    /// Replaces and removes read-only files, too.
    bool readOnlyToo = false;
    /// Reads the tree once before, for the totals of the progress.
    bool countFirst = false;
    /// Of the failures that the report holds; all of them are counted.
    std::size_t failureLimit = 100;
    /// Asked before each entry, and now and then while a file is copied.
    std::stop_token stop = {};
    /// Told after each file, and now and then while one is copied. What it throws ends the operation and comes out of
    /// the call.
    std::function<void(const TreeProgress&)> progress = {};
};

/// What an operation did.
struct TreeReport
{
    /// Done: copied, moved or removed. Folders are those made or removed; one that was moved in one piece counts as
    /// one, whatever is in it.
    /// @{
    std::uint64_t files = 0;
    std::uint64_t folders = 0;
    std::uint64_t links = 0;
    /// Of content that was copied.
    std::uint64_t bytes = 0;
    /// @}
    /// Files and links that were not newer than what they would have replaced.
    std::uint64_t skipped = 0;
    /// The first ones, and how many there were.
    /// @{
    std::vector<Failure> failures;
    std::uint64_t failureCount = 0;
    /// @}
    /// By its token.
    bool isStopped = false;
    /// Then nothing of the above is left.
    bool isRolledBack = false;

    /// Whether all was done.
    /// @{
    bool isDone() const noexcept { return failureCount == 0 && !isStopped; }
    explicit operator bool() const noexcept { return isDone(); }
    /// @}
};

/// Copies what is in `source` into `target`, which is made if it is missing, with the folders above it. Folders that
/// are there are filled up. A file that is replaced is whole before it takes its place; a link at the target is
/// replaced itself, and none is followed there. Pipes and devices are never opened: they are failures with code 50.
[[nodiscard]] OXA_API TreeReport copyTree(const Directory& source, const Directory& target,
                                          const TreeOptions& options = {});

/// Removes the folder and all that is in it. Of a link, the link itself. What is not there needs no removing; a root
/// stays.
OXA_API TreeReport removeTree(const Directory& folder, const TreeOptions& options = {});

/// Gives the folder the path `target`: in one step where that is possible, and else entry by entry. What lies on
/// another disk is copied and compared, and only then removed, so that at every moment one side is whole. If `target`
/// is there, it is filled up. What could not be moved stays where it was.
[[nodiscard]] OXA_API TreeReport moveTree(const Directory& folder, const Directory& target,
                                          const TreeOptions& options = {});

/// The same for one file, or a link.
[[nodiscard]] OXA_API TreeReport moveFile(const File& file, const File& target, const TreeOptions& options = {});

}  // namespace Oxa_1_1
