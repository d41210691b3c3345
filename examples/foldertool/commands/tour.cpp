// Shows on a copy of a folder what the library does, and how long each step takes.

#include <array>
#include <utility>

#include "base/filesystem/disk_facts.h"
#include "base/filesystem/temporary.h"
#include "examples/foldertool/call_stack.h"
#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/comparison.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/item_info.h"
#include "examples/foldertool/module_report.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/text.h"
#include "examples/foldertool/tour_steps.h"
#include "examples/foldertool/tree.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

class Tour
{
   public:
    explicit Tour(SharedFolder folder) : m_folder(std::move(folder)) {}

    bool run()
    {
        constexpr std::array STEPS{
            Step{IDS_STEP_MODULES, &Tour::showModules}, Step{IDS_STEP_LIST, &Tour::listFiles},
            Step{IDS_STEP_COPY, &Tour::copy},           Step{IDS_STEP_COMPARE, &Tour::compare},
            Step{IDS_STEP_RENAME, &Tour::countUp},      Step{IDS_STEP_INFO, &Tour::writeInfo},
            Step{IDS_STEP_MOVE, &Tour::move},           Step{IDS_STEP_REMOVE, &Tour::remove},
            Step{IDS_STEP_STACK, &Tour::showStack},
        };
        for (const Step& step : STEPS)
        {
            m_steps.begin(step.title);
            m_steps.end((this->*step.run)());
        }
        return m_steps.finish();
    }

   private:
    struct Step
    {
        unsigned int title;
        /// Says what came of it.
        std::string (Tour::*run)();
    };

    std::string showModules()
    {
        const std::vector<std::string> modules = moduleLines();
        for (const std::string& module : modules) TourSteps::detail(module);
        return counted(IDS_ONE_MODULE, modules.size());
    }

    std::string listFiles()
    {
        for (const char* const pattern : {"*.txt", "*.md", "*.html", "README*"})
        {
            unsigned long long totalBytes = 0;
            unsigned long long files = 0;
            TreeWalk walk(*m_folder, {.pattern = pattern, .kinds = WalkedKinds::Files, .followLinks = true});
            for (const WalkEntry& entry : walk)
            {
                totalBytes += entry.size().value_or(0);
                ++files;
            }
            TourSteps::detail(left(pattern, 10) + right(counted(IDS_ONE_FILE, files), 16) +
                              right(byteText(totalBytes), 12));
        }
        const TreeTotals totals = measure(*m_folder);
        if (!totals.isWhole) m_steps.fail();
        m_bytes = totals.bytes;
        return summary(totals);
    }

    std::string copy()
    {
        if (m_temporary.directory() == nullptr) throw Failure(text(IDS_NO_TEMPORARY_FOLDER));
        const auto room = freeSpace(*m_temporary.directory());
        if (room && room->available < m_bytes)
            throw Failure(
                text(IDS_NO_ROOM, {pathText(*m_temporary.directory()), byteText(m_bytes), byteText(room->available)}));
        m_copy = inTemporary("copy");
        TourSteps::detail(pathText(*m_copy));
        const FolderCopy copied = copyFolder(*m_folder, *m_copy, false);
        if (!copied.isWhole) m_steps.fail();
        return copied.summary;
    }

    std::string compare()
    {
        const std::vector<std::string> found = differences(*m_folder, *m_copy);
        for (const std::string& difference : found) complain(difference);
        if (found.empty()) return text(IDS_SAME);
        m_steps.fail();
        return text(IDS_DIFFERENT, {numberText(found.size())});
    }

    std::string countUp()
    {
        const auto first = File::fromString(*m_temporary.directory(), OXA_TEXT("scan009.txt"));
        String name = first->getBaseName();
        name.incrementIndex();
        const auto next = File::fromString(*m_temporary.directory(), name + OXA_TEXT(".txt"));
        if (!first->touch() || !first->move(*next, false)) return failure(*first);
        return text(IDS_RENAMED, {first->getName().stringUTF8(), next->getName().stringUTF8()});
    }

    std::string writeInfo()
    {
        const auto file = File::fromString(*m_temporary.directory(), OXA_TEXT("copy.info"));
        const auto stream = file->openWrite();
        for (const std::string& line : linesOf(infoOf(*m_copy)))
        {
            TourSteps::detail(line);
            *stream << line << '\n';
        }
        if (!stream->flush()) return failure(*file);
        return text(IDS_WRITTEN_TO, {pathText(*file)});
    }

    std::string move()
    {
        const auto target = inTemporary("moved");
        if (!reportFailures(moveTree(*m_copy, *target), IDS_NOT_MOVED)) m_steps.fail();
        m_copy = target;
        return text(IDS_MOVED_TO, {pathText(*target)});
    }

    std::string remove()
    {
        if (!reportFailures(removeTree(*m_copy, {.readOnlyToo = true}), IDS_NOT_REMOVED)) m_steps.fail();
        return text(IDS_ALL_REMOVED);
    }

    std::string showStack()
    {
        const std::vector<std::string> frames = callStack();
        for (const std::string& frame : frames) TourSteps::detail(frame);
        return counted(IDS_ONE_FRAME, frames.size());
    }

    SharedFolder inTemporary(const String& name) const { return m_temporary.directory()->appendLevel(name); }

    std::string failure(const FileSystemItem& item)
    {
        m_steps.fail();
        return text(IDS_REASON, {pathText(item), lastReason()});
    }

    TourSteps m_steps;
    SharedFolder m_folder;
    unsigned long long m_bytes = 0;
    TemporaryFolder m_temporary{OXA_TEXT("foldertool")};
    SharedFolder m_copy;
};

}  // namespace

bool commands::tour(const CommandLine& line)
{
    const SharedFolder folder = existingFolder(line.operands[0]);
    print(text(IDS_TOUR_OF, {text(IDS_PROGRAM), ownVersion(), pathText(*folder)}));
    return Tour(folder).run();
}

}  // namespace foldertool
