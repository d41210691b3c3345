// The least work for the same results: one pass over a path, the system's own calls relative to open folders.

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "benchmarks/contest.h"
#include "benchmarks/file_samples.h"
#include "benchmarks/floors.h"
#include "benchmarks/path_samples.h"

namespace Oxa_1_1::bench
{

namespace
{

struct Path
{
    std::u16string root;
    std::vector<std::u16string> levels;
};

constexpr auto IS_FORBIDDEN = []
{
    std::array<bool, 0x80> forbidden{};
    std::fill_n(forbidden.begin(), 0x20, true);
    for (const char c : std::string_view("*?<>:\"/|")) forbidden[static_cast<std::size_t>(c)] = true;
    return forbidden;
}();

bool isForbidden(char16_t c) { return c < IS_FORBIDDEN.size() && IS_FORBIDDEN[c]; }

/// Of an absolute path on a drive. No levels when it is none.
Path parse(std::u16string_view text)
{
    Path path;
    if (text.size() < 3 || text[1] != ':' || text[2] != '\\') return path;
    path.root = text.substr(0, 2);
    path.levels.reserve(static_cast<std::size_t>(std::ranges::count(text, u'\\')));
    for (std::size_t begin = 3; begin < text.size();)
    {
        std::size_t end = begin;
        for (; end < text.size() && text[end] != '\\'; ++end)
            if (isForbidden(text[end])) return {};
        const std::u16string_view name = text.substr(begin, end - begin);
        begin = end + 1;
        if (name.empty() || name == u".") continue;
        if (name != u"..")
            path.levels.emplace_back(name);
        else if (path.levels.empty())
            return {};
        else
            path.levels.pop_back();
    }
    return path;
}

std::vector<std::u16string> makeRelative(const Path& path, const Path& reference)
{
    std::vector<std::u16string> levels;
    if (path.root != reference.root) return path.levels;
    const auto [from, to] = std::ranges::mismatch(
        reference.levels, path.levels, [](const auto& a, const auto& b) { return floors::compareFolded(a, b) == 0; });
    const auto up = static_cast<std::size_t>(reference.levels.end() - from);
    levels.reserve(up + static_cast<std::size_t>(path.levels.end() - to));
    levels.assign(up, u"..");
    levels.insert(levels.end(), to, path.levels.end());
    return levels;
}

/// An open folder or file.
class Opened
{
   public:
    Opened(int folder, const char* name, int flags, mode_t mode = 0) : m_number(openat(folder, name, flags, mode))
    {
        check(m_number >= 0, name);
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() { close(m_number); }
    int get() const { return m_number; }

   private:
    int m_number;
};

constexpr int FOLDER = O_RDONLY | O_DIRECTORY;

/// Calls `act` with each entry, as it stands in the system's buffer.
template <class Act>
void forEachEntry(int folder, Act act)
{
    alignas(dirent64) std::byte buffer[32768];
    for (;;)
    {
        const ssize_t size = getdents64(folder, buffer, sizeof buffer);
        check(size >= 0, "getdents64");
        if (size == 0) return;
        for (ssize_t i = 0; i < size;)
        {
            const auto* const entry = reinterpret_cast<const dirent64*>(buffer + i);
            i += entry->d_reclen;
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..") act(*entry);
        }
    }
}

/// A folder's files share its path.
struct Found
{
    std::shared_ptr<const std::string> folder;
    std::u16string name;
};

bool isText(std::string_view name)
{
    constexpr std::string_view ENDING = ".txt";
    return name.size() >= ENDING.size() &&
           std::ranges::equal(name.substr(name.size() - ENDING.size()), ENDING,
                              [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a | 0x20 : a) == b; });
}

template <class Matches>
void appendFiles(std::vector<Found>& found, int folder, const std::shared_ptr<const std::string>& path,
                 const Matches& matches)
{
    forEachEntry(folder,
                 [&](const dirent64& entry)
                 {
                     const std::string_view name = entry.d_name;
                     if (entry.d_type == DT_REG && matches(name)) found.push_back({path, {name.begin(), name.end()}});
                 });
}

/// Reads each folder twice, first for its files and then for its folders, as the order of the library's lists asks.
void appendTree(std::vector<Found>& found, const std::shared_ptr<const std::string>& path)
{
    const Opened folder(AT_FDCWD, path->c_str(), FOLDER);
    appendFiles(found, folder.get(), path, [](std::string_view) { return true; });
    lseek(folder.get(), 0, SEEK_SET);
    std::vector<std::shared_ptr<const std::string>> below;
    forEachEntry(folder.get(),
                 [&](const dirent64& entry)
                 {
                     if (entry.d_type == DT_DIR)
                         below.push_back(std::make_shared<const std::string>(*path + '/' + entry.d_name));
                 });
    for (const auto& inside : below) appendTree(found, inside);
}

/// The same in one pass.
void appendTreeOnce(std::vector<Found>& found, const std::shared_ptr<const std::string>& path)
{
    const Opened folder(AT_FDCWD, path->c_str(), FOLDER);
    std::vector<std::shared_ptr<const std::string>> below;
    forEachEntry(folder.get(),
                 [&](const dirent64& entry)
                 {
                     const std::string_view name = entry.d_name;
                     if (entry.d_type == DT_DIR)
                         below.push_back(std::make_shared<const std::string>(*path + '/' + entry.d_name));
                     else if (entry.d_type == DT_REG)
                         found.push_back({path, {name.begin(), name.end()}});
                 });
    for (const auto& inside : below) appendTreeOnce(found, inside);
}

/// Keeps the name of each file, and makes no list.
void walkTree(int parent, const char* name)
{
    const Opened folder(parent, name, FOLDER);
    forEachEntry(folder.get(),
                 [&](const dirent64& entry)
                 {
                     const std::string_view inside = entry.d_name;
                     if (entry.d_type == DT_DIR)
                         walkTree(folder.get(), entry.d_name);
                     else if (isText(inside))
                         keep(std::u16string(inside.begin(), inside.end()));
                 });
}

constexpr std::size_t PIECE = 256 * 1024;
constexpr std::size_t MAPPED_PIECE = 1024 * 1024;
/// The system copies fastest to and from whole lines of the cache.
struct Piece
{
    alignas(64) std::byte bytes[PIECE];
};

/// Large files go from one cache of the system to the other without a copy between, as long as there is a whole piece.
void copyMapped(int from, int to, off_t size)
{
    off_t done = 0;
    for (; size - done >= static_cast<off_t>(MAPPED_PIECE); done += MAPPED_PIECE)
    {
        void* const bytes = mmap(nullptr, MAPPED_PIECE, PROT_READ, MAP_SHARED | MAP_POPULATE, from, done);
        check(bytes != MAP_FAILED, "mmap");
        check(write(to, bytes, MAPPED_PIECE) == static_cast<ssize_t>(MAPPED_PIECE), "write");
        munmap(bytes, MAPPED_PIECE);
    }
    check(lseek(from, done, SEEK_SET) == done, "lseek");
}

void copyContent(int from, int to, Piece& piece)
{
    for (;;)
    {
        const ssize_t size = read(from, piece.bytes, PIECE);
        check(size >= 0, "read");
        if (size == 0) return;
        check(write(to, piece.bytes, static_cast<std::size_t>(size)) == size, "write");
    }
}

/// Content, permissions and time of the last write.
void copyFile(int fromFolder, int toFolder, const char* name, const char* targetName, Piece& piece)
{
    const Opened from(fromFolder, name, O_RDONLY);
    struct stat status;
    check(fstat(from.get(), &status) == 0, "fstat");
    const Opened to(toFolder, targetName, O_WRONLY | O_CREAT | O_EXCL, status.st_mode & 0777);
    if (status.st_size > static_cast<off_t>(PIECE)) check(fallocate(to.get(), 0, 0, status.st_size) == 0, "fallocate");
    copyMapped(from.get(), to.get(), status.st_size);
    copyContent(from.get(), to.get(), piece);
    const struct timespec times[] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, status.st_mtim};
    check(fchmod(to.get(), status.st_mode & 0777) == 0 && futimens(to.get(), times) == 0, "attributes");
}

void copyTree(int fromParent, int toParent, const char* name, const char* targetName, Piece& piece)
{
    const Opened from(fromParent, name, FOLDER);
    check(mkdirat(toParent, targetName, 0777) == 0, "mkdirat");
    const Opened to(toParent, targetName, FOLDER);
    forEachEntry(from.get(),
                 [&](const dirent64& entry)
                 {
                     const char* const inside = entry.d_name;
                     if (entry.d_type == DT_DIR)
                         copyTree(from.get(), to.get(), inside, inside, piece);
                     else
                         copyFile(from.get(), to.get(), inside, inside, piece);
                 });
}

/// A file that nobody may write is to stay, though the system would remove it: whoever removes one has to look first.
void removeFile(int folder, const char* name)
{
    struct stat status;
    check(fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && (status.st_mode & 0222) != 0, name);
    check(unlinkat(folder, name, 0) == 0, "unlinkat");
}

void removeTree(int parent, const char* name)
{
    {
        const Opened folder(parent, name, FOLDER);
        forEachEntry(folder.get(),
                     [&](const dirent64& entry)
                     {
                         if (entry.d_type == DT_DIR)
                             removeTree(folder.get(), entry.d_name);
                         else
                             removeFile(folder.get(), entry.d_name);
                     });
    }
    check(unlinkat(parent, name, AT_REMOVEDIR) == 0, "unlinkat");
}

void addLists()
{
    addOn(work::LIST_FOLDER, FLOOR, largeFolder,
          [](const FileSample& sample)
          {
              std::vector<Found> found;
              const Opened folder(AT_FDCWD, sample.path.c_str(), FOLDER);
              appendFiles(found, folder.get(), std::make_shared<const std::string>(sample.path), isText);
              keep(found);
          });
    const auto addTree = [](const std::string& who, auto append)
    {
        addOn(work::LIST_TREE, who, largeTree,
              [append](const FileSample& sample)
              {
                  std::vector<Found> found;
                  append(found, std::make_shared<const std::string>(sample.path));
                  keep(found);
              });
    };
    addOn(work::WALK_TREE, FLOOR, largeTree, [](const FileSample& sample) { walkTree(AT_FDCWD, sample.path.c_str()); });
    addTree(FLOOR, appendTree);
    addTree(FLOOR + " of one pass", appendTreeOnce);
}

}  // namespace

void addFileFloors()
{
    add(work::PARSE_PATH, FLOOR, [text = std::u16string(WINDOWS_PATH)] { keep(parse(text)); });
    add(work::MAKE_RELATIVE, FLOOR,
        [path = parse(WINDOWS_FOLDER), reference = parse(WINDOWS_REFERENCE)] { keep(makeRelative(path, reference)); });
    addLists();
    const auto piece = std::make_shared<Piece>();
    addOnFresh(work::COPY_LARGE, FLOOR, largeCopy,
               [piece](const CopySample& sample)
               { copyFile(AT_FDCWD, AT_FDCWD, sample.source.c_str(), sample.target.c_str(), *piece); });
    addOnFresh(work::COPY_SMALL, FLOOR, smallCopies,
               [piece](const CopySample& sample)
               { copyTree(AT_FDCWD, AT_FDCWD, sample.source.c_str(), sample.target.c_str(), *piece); });
    addOnFresh(work::TRANSFER_SMALL, FLOOR, smallCopies,
               [piece](const CopySample& sample)
               { copyTree(AT_FDCWD, AT_FDCWD, sample.source.c_str(), sample.target.c_str(), *piece); });
    addOnFresh(work::REMOVE_SMALL, FLOOR, doomedTree,
               [](const FileSample& sample) { removeTree(AT_FDCWD, sample.path.c_str()); });
}

}  // namespace Oxa_1_1::bench
