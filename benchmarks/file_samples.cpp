#include "benchmarks/file_samples.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>

#include "benchmarks/options.h"

namespace Oxa_1_1::bench
{

namespace
{

namespace fs = std::filesystem;

constexpr int FILES_IN_FOLDER = 100;
constexpr int FOLDERS_IN_FOLDER = 10;
constexpr int QUICK = 10;
constexpr std::size_t MEBI = 1 << 20;

int scaled(int count) { return options().isQuick ? count / QUICK : count; }

/// A folder of the program's own, gone with the object.
class Scratch
{
   public:
    explicit Scratch(const fs::path& place) : m_path((place / "oxa_bench_XXXXXX").string())
    {
        if (mkdtemp(m_path.data()) == nullptr) throw std::runtime_error("cannot make a folder in " + place.string());
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch()
    {
        // The standard library's removal keeps every level open.
        (void)!std::system(("rm -rf '" + m_path + "'").c_str());
    }

    fs::path operator/(const char* name) const { return fs::path(m_path) / name; }

   private:
    std::string m_path;
};

const Scratch& disk()
{
    static const Scratch scratch(options().disk);
    return scratch;
}

const Scratch& memoryDisk()
{
    static const Scratch scratch(options().memoryDisk);
    return scratch;
}

void checkSpace(const fs::path& place, double bytes)
{
    if (static_cast<double>(fs::space(place).available) < bytes) throw std::runtime_error("too little space");
}

std::string nameOf(int i)
{
    char name[32];
    std::snprintf(name, sizeof name, "scan%06d.txt", i);
    return name;
}

void writeFile(const fs::path& path, const std::string& content)
{
    std::ofstream file(path, std::ios::binary);
    file << content;
    check(bool(file.flush()), "writing a sample");
}

FileSample makeFolder(const fs::path& path, int count)
{
    fs::create_directories(path);
    for (int i = 0; i < count; ++i) writeFile(path / nameOf(i), "");
    return {path, static_cast<double>(count)};
}

FileSample makeTree(const fs::path& path, int count, const std::string& content)
{
    for (int i = 0; i < count; ++i)
    {
        const int folder = i / FILES_IN_FOLDER;
        const fs::path inside = path / std::to_string(folder / FOLDERS_IN_FOLDER) / std::to_string(folder);
        if (i % FILES_IN_FOLDER == 0) fs::create_directories(inside);
        writeFile(inside / nameOf(i), content);
    }
    return {path, static_cast<double>(count)};
}

FileSample makeLargeFile(const fs::path& path, int mebibytes)
{
    // Room for a copy, and for what the system needs besides.
    checkSpace(path.parent_path(), 2.5 * mebibytes * MEBI);
    std::string content(MEBI, '\0');
    std::mt19937 random(1);
    for (char& byte : content) byte = static_cast<char>(random());
    std::ofstream file(path, std::ios::binary);
    for (int i = 0; i < mebibytes; ++i) file << content;
    check(bool(file.flush()), "writing a sample");
    return {path, static_cast<double>(mebibytes)};
}

const std::string& smallContent()
{
    static const std::string content(1000, 'x');
    return content;
}

/// 20,000 files of a kilobyte, a hundred in each folder.
const FileSample& smallFiles()
{
    static const FileSample sample = makeTree(memoryDisk() / "small", scaled(20'000), smallContent());
    return sample;
}

/// However deep it is.
void removeAll(const fs::path& path) { check(std::system(("rm -rf '" + path.string() + "'").c_str()) == 0, "rm"); }

/// It grows at its top, where paths are short.
FileSample makeChain(const fs::path& path, int levels)
{
    const fs::path above = path.string() + "_above";
    fs::create_directory(path);
    for (int i = 0; i < levels; ++i)
    {
        fs::create_directory(above);
        fs::rename(path, above / "d");
        fs::rename(above, path);
    }
    return {path, static_cast<double>(levels)};
}

/// As many as `cp` can copy: it goes by paths, which end at 4,096 bytes.
constexpr int LEVELS = 1900;
constexpr int FILES_OF_WIDE_FOLDER = 200'000;

CopySample freshCopy(const FileSample& source, const fs::path& target)
{
    fs::remove_all(target);
    return {source.path, target, source.items};
}

}  // namespace

const FileSample& largeFolder()
{
    static const FileSample sample = makeFolder(disk() / "folder", scaled(100'000));
    return sample;
}

const FileSample& largeTree()
{
    static const FileSample sample = makeTree(disk() / "tree", scaled(100'000), "");
    return sample;
}

const FileSample& largeFile()
{
    static const FileSample sample = makeLargeFile(disk() / "file", scaled(1024));
    return sample;
}

CopySample largeCopy() { return freshCopy(largeFile(), disk() / "target"); }

CopySample smallCopies() { return freshCopy(smallFiles(), memoryDisk() / "target"); }

FileSample doomedTree() { return makeTree(memoryDisk() / "doomed", scaled(20'000), smallContent()); }

const FileSample& deepTree()
{
    static const FileSample sample = makeChain(memoryDisk() / "deep", scaled(LEVELS));
    return sample;
}

const FileSample& halfDeepTree()
{
    static const FileSample sample = makeChain(memoryDisk() / "half_deep", scaled(LEVELS) / 2);
    return sample;
}

const FileSample& wideFolder()
{
    static const FileSample sample = makeFolder(memoryDisk() / "wide", scaled(FILES_OF_WIDE_FOLDER));
    return sample;
}

const FileSample& halfWideFolder()
{
    static const FileSample sample = makeFolder(memoryDisk() / "half_wide", scaled(FILES_OF_WIDE_FOLDER) / 2);
    return sample;
}

CopySample freshCopyOf(const FileSample& sample)
{
    removeAll(memoryDisk() / "target");
    return {sample.path, memoryDisk() / "target", sample.items};
}

CopySample doomedCopyOf(const FileSample& sample)
{
    const fs::path doomed = memoryDisk() / "doomed_copy";
    removeAll(doomed);
    check(std::system(("cp -a '" + sample.path.string() + "' '" + doomed.string() + "'").c_str()) == 0, "cp");
    CopySample fresh = freshCopyOf(sample);
    fresh.source = doomed;
    return fresh;
}

double usedMemory()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void check(bool isDone, const char* what)
{
    if (!isDone) throw std::runtime_error(std::string(what) + " failed");
}

}  // namespace Oxa_1_1::bench
