// Lists the files below a folder that match a pattern.

#include "base/filesystem/search_string.h"
#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"
#include "examples/foldertool/tree.h"

namespace foldertool
{

using namespace Oxa_1_1;

bool commands::list(const CommandLine& line)
{
    constexpr std::size_t SIZE_COLUMNS = 15;
    const String pattern = system::textOf(line.operands[0]);
    if (!isValidSearchString(pattern)) throw UsageError(text(IDS_BAD_PATTERN, {nameText(line.operands[0])}));
    const SharedFolder folder = existingFolder(line.operands[1]);

    unsigned long long totalBytes = 0;
    unsigned long long count = 0;
    const auto show = [&](const WalkEntry& entry)
    {
        const std::uint64_t bytes = entry.size().value_or(0);
        print(right(numberText(bytes), SIZE_COLUMNS) + "  " + pathText(*entry.file()));
        totalBytes += bytes;
        ++count;
    };
    const bool isWhole = eachFile(*folder, pattern, show);
    print(right(byteText(totalBytes), SIZE_COLUMNS) + "  " + counted(IDS_ONE_FILE, count));
    return isWhole;
}

}  // namespace foldertool
