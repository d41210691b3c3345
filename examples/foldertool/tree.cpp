#include "examples/foldertool/tree.h"

#include <limits>
#include <memory>
#include <utility>

#include "base/filesystem/search_string.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

template <class Failures>
bool complainAbout(const Failures& failures, unsigned int id)
{
    for (const auto& failure : failures)
        complain(text(id, {pathText(*File::fromString(failure.path)), reasonText(failure)}));
    return failures.empty();
}

}  // namespace

TreeTotals measure(const Directory& folder)
{
    TreeTotals totals;
    TreeWalk walk(folder, {.followLinks = true});
    for (const WalkEntry& entry : walk)
    {
        throwIfStopped();
        ++(entry.isFolder() ? totals.folders : totals.files);
        if (!entry.isFolder()) totals.bytes += entry.size().value_or(0);
    }
    totals.isWhole = reportFailures(walk);
    return totals;
}

bool eachFile(const Directory& folder, const String& pattern, const std::function<void(const WalkEntry&)>& show)
{
    // Everything is walked over here, since a walk that shows nothing cannot be stopped.
    TreeWalk walk(folder, {.followLinks = true});
    for (const WalkEntry& entry : walk)
    {
        throwIfStopped();
        if (!entry.isFolder() && matchesSearchString(entry.name(), pattern)) show(entry);
    }
    return reportFailures(walk);
}

std::string summary(const TreeTotals& totals)
{
    return text(IDS_FILES_IN_FOLDERS,
                {counted(IDS_ONE_FILE, totals.files), counted(IDS_ONE_FOLDER, totals.folders), byteText(totals.bytes)});
}

bool reportFailures(const TreeReport& report, unsigned int id) { return complainAbout(report.failures, id); }

bool reportFailures(const TreeWalk& walk) { return complainAbout(walk.failures(), IDS_NOT_READ); }

TreeOptions stoppable(bool overwrite, std::function<void(const TreeProgress&)> show)
{
    const std::stop_source stop;
    // The library tells nothing while it counts or reads a large folder.
    const std::shared_ptr<void> watch = system::stopWhenAsked(stop);
    return {.overwrite = overwrite ? Overwrite::Always : Overwrite::Never,
            .failureLimit = std::numeric_limits<std::size_t>::max(),
            .stop = stop.get_token(),
            .progress = [stop, watch, show = std::move(show)](const TreeProgress& progress) mutable
            {
                if (system::stopCode() != 0) stop.request_stop();
                if (show) show(progress);
            }};
}

}  // namespace foldertool
