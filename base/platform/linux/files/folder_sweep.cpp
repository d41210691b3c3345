// Emptying folders relative to their open handles: no path is walked twice, and none can lead elsewhere meanwhile.

#include <fcntl.h>
#include <sys/stat.h>

#include <string>
#include <utility>
#include <vector>

#include "base/platform/files/detail/native_files.h"
#include "base/platform/linux/files/folder_entries.h"
#include "base/platform/linux/files/reachable_path.h"

namespace Oxa_1_1::platform::native
{

namespace
{

/// Each folder above stays open meanwhile. What lies deeper is left.
constexpr std::size_t DEEPEST = 32;

FileDescriptor openFolderItself(int parent, const char* name)
{
    constexpr int FLAGS = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    return FileDescriptor(uninterrupted([&] { return openat(parent, name, FLAGS); }));
}

class Sweep
{
   public:
    explicit Sweep(bool recursive) : m_isRecursive(recursive) {}

    void run(FileDescriptor top)
    {
        enter(std::move(top), {});
        while (!m_open.empty())
        {
            Level& level = m_open.back();
            if (const struct dirent64* const entry = level.entries.next())
                visit(level.entries.folder(), entry->d_name);
            else
                leave();
        }
    }

   private:
    /// A folder whose entries are being visited, and its name in the one before.
    struct Level
    {
        FolderEntries entries;
        std::string name;
    };

    void enter(FileDescriptor folder, std::string name)
    {
        if (folder.isOpen()) m_open.push_back({FolderEntries(std::move(folder)), std::move(name)});
    }

    void leave()
    {
        const std::string name = std::move(m_open.back().name);
        m_open.pop_back();
        if (!m_open.empty()) unlinkat(m_open.back().entries.folder(), name.c_str(), AT_REMOVEDIR);
    }

    void visit(int folder, const char* name)
    {
        struct stat status;
        if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return;
        if (S_ISDIR(status.st_mode))
        {
            if (m_isRecursive && m_open.size() < DEEPEST) enter(openFolderItself(folder, name), name);
            return;
        }
        const bool isLink = S_ISLNK(status.st_mode);
        if (isLink && !m_isRecursive && isLinkToFolder(folder, name)) return;
        if (isLink || !isReadOnly(status)) unlinkat(folder, name, 0);
    }

    static bool isLinkToFolder(int folder, const char* name)
    {
        struct stat status;
        return fstatat(folder, name, &status, 0) == 0 && S_ISDIR(status.st_mode);
    }

    bool m_isRecursive;
    std::vector<Level> m_open;
};

}  // namespace

void sweepFolder(TextView path, bool recursive)
{
    const ReachablePath reachable(path);
    Sweep(recursive).run(openFolderItself(reachable.folder(), reachable.itself()));
}

}  // namespace Oxa_1_1::platform::native
