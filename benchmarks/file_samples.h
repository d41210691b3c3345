#pragma once

#include <filesystem>

/// Folders and files to work on, the same for everyone. They are made when they are first asked for and are gone at
/// the end of the program.
namespace Oxa_1_1::bench
{

struct FileSample
{
    std::filesystem::path path;
    /// Files, or MiB of a large file.
    double items = 0;
};

/// One folder of 100,000 empty files.
const FileSample& largeFolder();
/// 100,000 empty files, a hundred in each folder.
const FileSample& largeTree();
/// A GiB, in the page cache.
const FileSample& largeFile();
/// Something to copy, and a place on the same disk where nothing is. Small files are on the memory disk if there is
/// one: what a journal has to do, and when, is nobody's merit.
struct CopySample
{
    std::filesystem::path source;
    std::filesystem::path target;
    double items = 0;
};
CopySample largeCopy();
CopySample smallCopies();

/// 20,000 files of a kilobyte, a hundred in each folder, made anew there.
FileSample doomedTree();

/// A chain of 1,900 folders, and one folder of 200,000 empty files, both on the memory disk.
const FileSample& deepTree();
const FileSample& wideFolder();
/// With half of it.
const FileSample& halfDeepTree();
const FileSample& halfWideFolder();
/// To copy such a sample, and one that may be moved or removed.
/// @{
CopySample freshCopyOf(const FileSample& sample);
CopySample doomedCopyOf(const FileSample& sample);
/// @}

/// Every file of the samples has a name of so many characters.
inline constexpr double NAME_LENGTH = 14;

/// The memory that the program has taken and not given back, in bytes.
double usedMemory();

/// Throws when an operation says that it failed.
void check(bool isDone, const char* what);

}  // namespace Oxa_1_1::bench
