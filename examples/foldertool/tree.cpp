#include "examples/foldertool/tree.h"

#include <limits>
#include <utility>

#include "base/diagnostics/windows_error.h"
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
    return {.overwrite = overwrite ? Overwrite::Always : Overwrite::Never,
            .failureLimit = std::numeric_limits<std::size_t>::max(),
            .stop = stop.get_token(),
            .progress = [stop, show = std::move(show)](const TreeProgress& progress) mutable
            {
                if (system::stopCode() != 0) stop.request_stop();
                if (show) show(progress);
            }};
}

}  // namespace foldertool
