#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/filesystem/detail/parsed_directory.h"
#include "base/platform/files/tree.h"
#include "base/platform/system/last_error.h"

/// Walks through trees on disk, from open folder to open folder.
namespace Oxa_1_1::detail
{

/// The last error where a folder is another one by now: its handle is void.
inline constexpr DWORD EXCHANGED = platform::INVALID_HANDLE;

/// What a folder holds, read at once.
class FolderContents
{
   public:
    struct Entry
    {
        std::size_t begin;
        std::size_t length;
        platform::EntryKind kind;

        bool isLink() const noexcept { return platform::isLink(kind); }
    };

    /// False when the folder could not be read to its end.
    bool read(platform::OpenFolder& folder);

    /// Both in the system's order.
    /// @{
    const std::vector<Entry>& folders() const noexcept { return m_folders; }
    const std::vector<Entry>& files() const noexcept { return m_files; }
    /// @}
    TextView nameOf(const Entry& entry) const noexcept { return TextView(m_names).substr(entry.begin, entry.length); }

   private:
    Text m_names;
    std::vector<Entry> m_folders;
    std::vector<Entry> m_files;
};

/// The way from the top of a tree down to the folder where a walk is. Only its top and some of the innermost folders
/// are open, however deep it is; one that is opened again must still be the same.
class FolderWay
{
   public:
    /// `path` is that of the top, for messages.
    FolderWay(platform::OpenFolder top, SharedDirectory path);

    platform::OpenFolder& current() noexcept { return m_levels.back().folder; }
    std::size_t depth() const noexcept { return m_levels.size() - 1; }

    /// Goes down; false, with the last error, when that is not possible.
    bool enter(TextView name, platform::Links links);
    /// Goes up again; false, with the last error, when the folder above is not where it was. Not for the top.
    bool leave();

    /// Whether the folder is one of those on the way.
    bool passes(const platform::FileIdentity& folder) const;

    /// Of the current folder.
    const SharedDirectory& path() const;
    /// Of an entry in it.
    /// @{
    String fullName(TextView entry, bool isFolder = false) const;
    String longName(TextView entry) const;
    /// @}

   private:
    struct Level
    {
        platform::OpenFolder folder;
        Text name;
        bool wasLink = false;
        std::optional<platform::FileIdentity> identity = std::nullopt;
        /// Null until it is asked for.
        mutable SharedDirectory path = nullptr;
    };

    static std::optional<platform::FileIdentity> identityOf(const Level& level);
    static bool isSame(Level& level);

    bool reopen(std::size_t index);

    std::vector<Level> m_levels;
};

/// Is shown the folders of a tree, each before those in it.
class TreeVisitor
{
   public:
    TreeVisitor() = default;
    TreeVisitor(const TreeVisitor&) = delete;
    TreeVisitor& operator=(const TreeVisitor&) = delete;
    virtual ~TreeVisitor() = default;
    /// The folder is the current one of the way. False ends the walk.
    virtual bool visit(FolderWay& way, const FolderContents& contents) = 0;
    /// Whether the walk goes through a link to a folder; unless this is overridden, through none.
    virtual bool follows(FolderWay& way, TextView link);
};
/// False, with the last error, when not all could be seen, or the visitor has ended it. What goes meanwhile is passed
/// over.
bool walkTree(FolderWay way, TreeVisitor& visitor);

}  // namespace Oxa_1_1::detail
