#include <filesystem>
#include <vector>

#include "benchmarks/contest.h"
#include "benchmarks/file_samples.h"
#include "benchmarks/path_samples.h"

namespace Oxa_1_1::bench
{

namespace
{

namespace fs = std::filesystem;

const std::string STANDARD = "std";

std::vector<fs::path> filesBelow(const fs::path& folder)
{
    std::vector<fs::path> found;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) found.push_back(entry.path());
    return found;
}

std::vector<fs::path> textFilesIn(const fs::path& folder)
{
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file() && entry.path().extension() == ".txt") found.push_back(entry.path());
    return found;
}

}  // namespace

void addStandardFiles()
{
    add(work::PARSE_PATH, STANDARD, [] { keep(fs::path(UNIX_PATH).lexically_normal()); });
    add(work::MAKE_RELATIVE, STANDARD,
        [path = fs::path(UNIX_FOLDER), reference = fs::path(UNIX_REFERENCE)]
        { keep(path.lexically_relative(reference)); });
    addOn(work::LIST_FOLDER, STANDARD, largeFolder, [](const FileSample& sample) { keep(textFilesIn(sample.path)); });
    addOn(work::LIST_TREE, STANDARD, largeTree, [](const FileSample& sample) { keep(filesBelow(sample.path)); });
    addValue(work::LIST_MEMORY, STANDARD,
             []
             {
                 const fs::path& folder = largeTree().path;
                 const double before = usedMemory();
                 const auto files = filesBelow(folder);
                 return (usedMemory() - before) / static_cast<double>(files.size()) - NAME_LENGTH;
             });
    addOnFresh(work::COPY_LARGE, STANDARD, largeCopy,
               [](const CopySample& sample) { fs::copy_file(sample.source, sample.target); });
    addOnFresh(work::COPY_SMALL, STANDARD, smallCopies,
               [](const CopySample& sample) { fs::copy(sample.source, sample.target, fs::copy_options::recursive); });
    addOnFresh(work::REMOVE_SMALL, STANDARD, doomedTree,
               [](const FileSample& sample) { check(fs::remove_all(sample.path) > 0, "remove_all"); });
}

}  // namespace Oxa_1_1::bench
