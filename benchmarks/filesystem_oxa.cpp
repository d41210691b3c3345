// The library's own paths, lists, copies and removals.

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/progress.h"
#include "base/filesystem/tree_operations.h"
#include "base/filesystem/tree_walk.h"
#include "benchmarks/contest.h"
#include "benchmarks/file_samples.h"
#include "benchmarks/path_samples.h"

namespace Oxa_1_1::bench
{

namespace
{

/// As cheap a receiver as there can be.
class Counter : public IProgress
{
   public:
    void onProgress(double) override { ++m_calls; }
    void onItem(const std::string&) override { ++m_calls; }

   private:
    int m_calls = 0;
};

void addPaths()
{
    add(work::PARSE_PATH, OURS, [text = String(WINDOWS_PATH)] { keep(Directory::fromString(text)); });
    add(work::MAKE_RELATIVE, OURS,
        [path = Directory::fromString(WINDOWS_FOLDER), reference = Directory::fromString(WINDOWS_REFERENCE)]
        { keep(path->makeRelative(*reference)); });
}

void addLists()
{
    addOn(work::LIST_FOLDER, OURS, largeFolder,
          [](const FileSample& sample)
          { keep(Directory::fromPath(sample.path)->collectFiles(OXA_TEXT("*.txt"), false)); });
    addOn(work::LIST_TREE, OURS, largeTree,
          [](const FileSample& sample) { keep(Directory::fromPath(sample.path)->collectFiles(OXA_TEXT("*"), true)); });
    addValue(work::LIST_MEMORY, LIMIT, [] { return 250.0; });
    addValue(work::LIST_MEMORY, OURS,
             []
             {
                 const auto folder = Directory::fromPath(largeTree().path);
                 const double before = usedMemory();
                 const auto files = folder->collectFiles(OXA_TEXT("*"), true);
                 return (usedMemory() - before) / static_cast<double>(files.size()) - NAME_LENGTH * sizeof(Char);
             });
}

void addWalks()
{
    addOn(work::WALK_TREE, OURS, largeTree,
          [](const FileSample& sample)
          {
              TreeWalk walk(*Directory::fromPath(sample.path), {.pattern = OXA_TEXT("*.txt")});
              for (const WalkEntry& entry : walk) keep(entry.name());
          });
    addValue(work::WALK_MEMORY, LIMIT, [] { return 1e6; });
    addValue(work::WALK_MEMORY, OURS,
             []
             {
                 const double before = usedMemory();
                 double most = 0;
                 TreeWalk walk(*Directory::fromPath(largeTree().path));
                 for (const WalkEntry& entry : walk)
                 {
                     keep(entry.name());
                     if (walk.passed() % 1000 == 0) most = std::max(most, usedMemory() - before);
                 }
                 return most;
             });
}

void copy(const CopySample& sample)
{
    const auto target = Directory::fromPath(sample.target);
    const auto source = Directory::fromPath(sample.source);
    check(target->create() && source->copyContents(*target, true, false, nullptr), "copyContents");
}

void addCopies()
{
    addOnFresh(work::COPY_LARGE, OURS, largeCopy,
               [](const CopySample& sample)
               {
                   const auto source = File::fromPath(sample.source);
                   const auto target = File::fromPath(sample.target);
                   check(source->copy(*target, false, std::make_shared<Counter>()) == 0, "copy");
               });
    addOnFresh(work::COPY_SMALL, OURS, smallCopies, [](const CopySample& sample) { copy(sample); });
    addOnFresh(work::TRANSFER_SMALL, OURS, smallCopies,
               [](const CopySample& sample) {
                   check(copyTree(*Directory::fromPath(sample.source), *Directory::fromPath(sample.target)).isDone(),
                         "copyTree");
               });
    addOnFresh(work::REMOVE_SMALL, OURS, doomedTree,
               [](const FileSample& sample) { check(Directory::fromPath(sample.path)->remove(true), "remove"); });
}

void list(const std::filesystem::path& folder)
{
    keep(Directory::fromPath(folder)->collectContents(OXA_TEXT("*"), true));
}

void move(const CopySample& sample)
{
    check(Directory::fromPath(sample.source)->move(*Directory::fromPath(sample.target), false), "move");
}

void remove(const CopySample& sample) { check(Directory::fromPath(sample.source)->remove(true), "remove"); }

/// The least of a few runs, in seconds.
template <class Act>
double timeOf(const FileSample& sample, Act act)
{
    constexpr int RUNS = 3;
    double least = 0;
    for (int i = 0; i < RUNS; ++i)
    {
        const CopySample doomed = doomedCopyOf(sample);
        const auto start = std::chrono::steady_clock::now();
        act(doomed);
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        if (i == 0 || time.count() < least) least = time.count();
    }
    return least;
}

template <class Act>
void addGrowth(const std::string& work, double limit, const FileSample& (*half)(), const FileSample& (*whole)(),
               Act act)
{
    addValue(work, LIMIT, [limit] { return limit; });
    addValue(work, OURS, [=] { return timeOf(whole(), act) / timeOf(half(), act); });
}

void addShapes()
{
    addOn(work::LIST_DEEP, OURS, deepTree, [](const FileSample& sample) { list(sample.path); });
    addOnFresh(
        work::COPY_DEEP, OURS, [] { return freshCopyOf(deepTree()); }, &copy);
    addOnFresh(
        work::COPY_WIDE, OURS, [] { return freshCopyOf(wideFolder()); }, &copy);
    addOnFresh(
        work::REMOVE_DEEP, OURS, [] { return doomedCopyOf(deepTree()); }, &remove);
    addOnFresh(
        work::REMOVE_WIDE, OURS, [] { return doomedCopyOf(wideFolder()); }, &remove);
    addGrowth(work::DEEPER, 2.3, &halfDeepTree, &deepTree,
              [](const CopySample& sample)
              {
                  list(sample.source);
                  copy(sample);
                  remove(sample);
              });
    addGrowth(work::COPY_WIDER, 2.2, &halfWideFolder, &wideFolder, &copy);
    addGrowth(work::MOVE_WIDER, 2.2, &halfWideFolder, &wideFolder, &move);
    addGrowth(work::REMOVE_WIDER, 2.2, &halfWideFolder, &wideFolder, &remove);
}

}  // namespace

void addFiles()
{
    addPaths();
    addLists();
    addWalks();
    addCopies();
    addShapes();
}

}  // namespace Oxa_1_1::bench
