// The library's own paths, lists, copies and removals.

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/progress.h"
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

void addCopies()
{
    addOnFresh(work::COPY_LARGE, OURS, largeCopy,
               [](const CopySample& sample)
               {
                   const auto source = File::fromPath(sample.source);
                   const auto target = File::fromPath(sample.target);
                   check(source->copy(*target, false, std::make_shared<Counter>()) == 0, "copy");
               });
    addOnFresh(work::COPY_SMALL, OURS, smallCopies,
               [](const CopySample& sample)
               {
                   const auto source = Directory::fromPath(sample.source);
                   const auto target = Directory::fromPath(sample.target);
                   check(target->create() && source->copyContents(*target, true, false, nullptr), "copyContents");
               });
    addOnFresh(work::REMOVE_SMALL, OURS, doomedTree,
               [](const FileSample& sample) { check(Directory::fromPath(sample.path)->remove(true), "remove"); });
}

}  // namespace

void addFiles()
{
    addPaths();
    addLists();
    addCopies();
}

}  // namespace Oxa_1_1::bench
