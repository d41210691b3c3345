// The system's own commands, run as processes.

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/contest.h"
#include "benchmarks/file_samples.h"

namespace Oxa_1_1::bench
{

namespace
{

/// What it prints goes nowhere.
void run(std::initializer_list<const char*> command)
{
    std::vector<char*> arguments;
    for (const char* const word : command) arguments.push_back(const_cast<char*>(word));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    const int failure = posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    check(failure == 0 && waitpid(process, &status, 0) == process && status == 0, arguments[0]);
}

}  // namespace

void addCommands()
{
    addOn(work::LIST_FOLDER, "find", largeFolder,
          [](const FileSample& sample) {
              run({"find", sample.path.c_str(), "-maxdepth", "1", "-iname", "*.txt", "-type", "f"});
          });
    addOn(work::LIST_TREE, "find", largeTree,
          [](const FileSample& sample) {
              run({"find", sample.path.c_str(), "-type", "f"});
          });
    addOn(work::WALK_TREE, "find", largeTree,
          [](const FileSample& sample) {
              run({"find", sample.path.c_str(), "-iname", "*.txt"});
          });
    addOnFresh(work::COPY_LARGE, "cp", largeCopy,
               [](const CopySample& sample) {
                   run({"cp", sample.source.c_str(), sample.target.c_str()});
               });
    // Only the second keeps permissions and times, as the library does.
    for (const char* const options : {"-r", "-rp"})
    {
        addOnFresh(work::COPY_SMALL, std::string("cp ") + options, smallCopies,
                   [options](const CopySample& sample) {
                       run({"cp", options, sample.source.c_str(), sample.target.c_str()});
                   });
    }
    addOnFresh(work::TRANSFER_SMALL, "cp -rp", smallCopies,
               [](const CopySample& sample) {
                   run({"cp", "-rp", sample.source.c_str(), sample.target.c_str()});
               });
    addOn(work::LIST_DEEP, "find", deepTree, [](const FileSample& sample) { run({"find", sample.path.c_str()}); });
    for (const auto& [work, sample] : {std::pair(work::COPY_DEEP, &deepTree), {work::COPY_WIDE, &wideFolder}})
    {
        addOnFresh(
            work, "cp -a", [sample = sample] { return freshCopyOf(sample()); },
            [](const CopySample& copy) {
                run({"cp", "-a", copy.source.c_str(), copy.target.c_str()});
            });
    }
    for (const auto& [work, sample] : {std::pair(work::REMOVE_DEEP, &deepTree), {work::REMOVE_WIDE, &wideFolder}})
    {
        addOnFresh(
            work, "rm -rf", [sample = sample] { return doomedCopyOf(sample()); },
            [](const CopySample& doomed) {
                run({"rm", "-rf", doomed.source.c_str()});
            });
    }
    addOnFresh(work::REMOVE_SMALL, "rm -rf", doomedTree,
               [](const FileSample& sample) {
                   run({"rm", "-rf", sample.path.c_str()});
               });
}

}  // namespace Oxa_1_1::bench
