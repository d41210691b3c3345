#include "base/filesystem/detail/tree_removal.h"

#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

using platform::EntryKind;
using platform::ReadOnlyFiles;

class TreeRemoval
{
   public:
    TreeRemoval(FolderWay way, ReadOnlyFiles readOnly) : m_way(std::move(way)), m_readOnly(readOnly) {}

    void run(bool recursive)
    {
        begin();
        if (!recursive) return;
        while (!m_levels.empty())
        {
            Level& level = m_levels.back();
            if (level.next < level.contents.folders().size())
                visit(level.contents, level.contents.folders()[level.next++]);
            else if (!end())
                return;
        }
    }

   private:
    struct Level
    {
        FolderContents contents;
        /// Of its folders.
        std::size_t next = 0;
    };

    void begin()
    {
        if (m_readOnly == ReadOnlyFiles::GO) m_way.current().unlock();
        FolderContents& contents = m_levels.emplace_back().contents;
        // What could not be read keeps the folder from being removed, which says why.
        contents.read(m_way.current());
        for (const auto& file : contents.files()) removeFile(contents.nameOf(file));
    }

    void visit(const FolderContents& contents, const FolderContents::Entry& folder)
    {
        const TextView name = contents.nameOf(folder);
        if (folder.kind == EntryKind::SUBFOLDER && m_way.enter(name, platform::Links::REFUSE))
            begin();
        else
            removeFolder(name);
    }

    /// False when there is no way back up.
    bool end()
    {
        m_levels.pop_back();
        if (m_levels.empty()) return true;
        if (!m_way.leave()) return false;
        const FolderContents& contents = m_levels.back().contents;
        removeFolder(contents.nameOf(contents.folders()[m_levels.back().next - 1]));
        return true;
    }

    void removeFile(TextView name)
    {
        if (m_way.current().deleteFile(name, m_readOnly) || saysMissing(platform::lastError())) return;
        reportFileThatStays(m_way.fullName(name));
    }

    void removeFolder(TextView name)
    {
        if (removeEmptied([&] { return m_way.current().removeFolder(name); }) || saysMissing(platform::lastError()))
            return;
        reportFolderThatStays(m_way.fullName(name, true));
    }

    FolderWay m_way;
    ReadOnlyFiles m_readOnly;
    std::vector<Level> m_levels;
};

}  // namespace

void removeTreeContents(FolderWay way, bool recursive, ReadOnlyFiles readOnly)
{
    TreeRemoval(std::move(way), readOnly).run(recursive);
}

void reportFileThatStays(const String& fullName)
{
    reportFailure(OXA_TEXT("Failed to delete file '%ls'.\r\nWindows error message: %ls"), fullName);
}

void reportFolderThatStays(const String& fullName)
{
    reportFailure(OXA_TEXT("Failed to remove directory '%ls'.\r\nWindows error message: %ls"), fullName);
}

}  // namespace Oxa_1_1::detail
