#pragma once

#include <functional>
#include <string>

#include "base/filesystem/tree_operations.h"
#include "base/filesystem/tree_walk.h"
#include "examples/foldertool/operands.h"

namespace foldertool
{

/// What lies below a folder.
struct TreeTotals
{
    unsigned long long files = 0;
    unsigned long long folders = 0;
    unsigned long long bytes = 0;
    /// False when something could not be read, which was complained about.
    bool isWhole = true;
};

/// With what links lead to.
TreeTotals measure(const Oxa_1_1::Directory& folder);

/// Shows the files below a folder whose names match, with what links lead to. False when something could not be read,
/// which was complained about.
bool eachFile(const Oxa_1_1::Directory& folder, const Oxa_1_1::String& pattern,
              const std::function<void(const Oxa_1_1::WalkEntry&)>& show);

/// "5,070 files in 93 folders, 48.1 MB"
std::string summary(const TreeTotals& totals);

/// What came of the copy of a folder.
struct FolderCopy
{
    bool isWhole;
    /// See copySummary().
    std::string summary;
};

/// Copies everything in a folder into another one, which is made. What cannot be copied is complained about and passed
/// over; then the copy is not whole.
FolderCopy copyFolder(const Oxa_1_1::Directory& source, const Oxa_1_1::Directory& target, bool overwrite);

/// Complains about what failed, by the text `id` for a path and a reason. True when there was nothing of that.
bool reportFailures(const Oxa_1_1::TreeReport& report, unsigned int id);
/// The same of a walk.
bool reportFailures(const Oxa_1_1::TreeWalk& walk);

/// For an operation that ends when the program is asked to. `show` may be empty.
Oxa_1_1::TreeOptions stoppable(bool overwrite, std::function<void(const Oxa_1_1::TreeProgress&)> show = {});

}  // namespace foldertool
