#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "base/filesystem/directory_impl.h"
#include "base/filesystem/file_system_item.h"
#include "base/filesystem/iterators.h"
#include "base/filesystem/progress.h"

namespace Oxa_1_1
{

class File;

/// A path to a folder.
///
/// Search strings hold the wildcards "*" (any run of characters) and "?" (exactly one); case does not count, and no
/// other character is special: "*.*" asks for a period. An empty pointer or list comes back for "", ".", "..", for
/// one that holds control characters or any of <>:"\/| and for one that ends with a blank or a period.
class OXA_API Directory : public FileSystemItem
{
   public:
    /// Makes an implementation from text; null for a text that it does not accept.
    using ImplCreator = std::function<std::unique_ptr<IDirectoryImpl>(const String&)>;

    /// The class record "Directory", derived from "FileSystemItem".
    static const uZClass* Class();

    /// Of the first creator that accepts the text; empty when none does. **NIL and "" are the current folder**, and
    /// what is removed there is what lies in it.
    static std::shared_ptr<Directory> fromString(const String& path);
    /// The same from UTF-8.
    /// @{
    static std::shared_ptr<Directory> fromUTF8(const char* path);
    static std::shared_ptr<Directory> fromUTF8(const std::string& path);
    template <std::same_as<std::string_view> T>
    static std::shared_ptr<Directory> fromUTF8(T path)
    {
        return fromString(String::fromUTF8(path));
    }
    static std::shared_ptr<Directory> fromUTF8(std::u8string_view path) { return fromString(String(path)); }
    /// @}
    /// From the system's own spelling.
    static std::shared_ptr<Directory> fromPath(const std::filesystem::path& path);

    /// Adds a creator, which is asked after those before it. False when it is there already.
    static bool registerImplCreator(std::shared_ptr<const ImplCreator> creator);
    /// False when it is not there.
    static bool unregisterImplCreator(const std::shared_ptr<const ImplCreator>& creator);

    /// Nothing to do: kept for callers.
    /// @{
    static void initStatics();
    static void clearStatics();
    /// @}

    /// `impl` must not be null.
    explicit Directory(std::unique_ptr<IDirectoryImpl> impl) noexcept;
    /// An independent path.
    /// @{
    Directory(const Directory& other);
    Directory& operator=(const Directory& other);
    /// @}
    ~Directory() override;

    /// What does the work; never null, and owned by this path.
    IDirectoryImpl* getImpl() const noexcept { return m_impl.get(); }

    const uZClass* getClassType() const override;
    bool exists() const override;
    String getFullName() const override;
    String getFullNameUnicode() const override;
    String getFullNameUnix() const override;
    /// The last level; "." without levels.
    String getName() const override;
    String getExtension() const override;
    String getBaseName() const override;
    /// Replaces the last level; nothing happens without levels or for a name that is none.
    void setName(const String& name) override;
    bool touch() const override;
    bool remove() const override;
    ComparisonResult equals(const FileSystemItem& other) const override;
    /// Copies everything in here into the folder that the text names, below this folder's name.
    int copy(const String& target, bool overwrite, std::shared_ptr<IProgress> progress) const override;
    /// Copies this folder and everything in it into `target`. The new folder. On failure empty, with the reason in the
    /// last error (see getWindowsError()), and nothing of the new folder remains, nor of what was in it before, unless
    /// something of this folder lies in it. A folder is not copied into itself.
    std::shared_ptr<const FileSystemItem> copy(const Directory& target, bool overwrite,
                                               std::shared_ptr<IProgress> progress) const override;
    /// Moves everything in here into `target`, which is emptied first when `overwrite`, and removes this folder. What
    /// was moved before a failure stays moved. A folder is not moved into itself, nor anything to another disk. A link
    /// is moved itself.
    /// @{
    bool move(const String& target, bool overwrite) const override;
    bool move(const Directory& target, bool overwrite) const;
    /// @}
    bool stat(struct _stat64i32& result) const override;
    bool access(int mode) const override;
    bool getCreationTime(FILETIME* time) const override;
    bool getLastWriteTime(FILETIME* time) const override;
    std::shared_ptr<const Directory> getParent() const override;
    bool isAbsolute() const override;
    /// On failure `bytes` holds the sum so far. A folder that cannot be read to its end is one.
    bool size(unsigned long long& bytes) const override;
    /// The same as exists().
    virtual bool isDirectory() const;

    /// The root: "C:", "\\server\share"; NIL for a path without.
    String getRoot() const;
    /// As FileSystemItem::makeAbsolute() and FileSystemItem::makeRelative().
    /// @{
    std::shared_ptr<const Directory> makeAbsolute() const;
    std::shared_ptr<const Directory> makeRelative(const Directory& reference) const;
    /// @}
    /// The folder of this name in here. "." and ".." are kept as they are.
    std::shared_ptr<const Directory> appendLevel(const String& name) const;
    /// The relative path seen from here; empty for an absolute one, or when it leads beyond the root.
    std::shared_ptr<const Directory> appendPath(const Directory& relative) const;
    /// The same without these checks: the levels of `other`, appended.
    std::shared_ptr<const Directory> combine(const Directory& other) const;
    /// The file, in its folder's levels below here.
    std::shared_ptr<const File> combine(const File& file) const;
    /// Whether the full name of the item begins with that of this folder. Case counts.
    bool contains(const FileSystemItem& item) const;

    /// Makes the folder and all missing ones above it; true when it is there already.
    bool create() const;
    /// Whether it is there and holds nothing.
    bool isEmpty() const;
    /// With `recursive`, everything in it is removed first. Links in it are removed, never what they lead to.
    bool remove(bool recursive) const;
    /// Removes the files in it and, with `recursive`, the folders. Always true, whatever remains. Of a link to a
    /// folder, nothing is removed.
    bool removeContents(bool recursive) const;
    /// Copies the files in it into `target`, which must be there, and makes its folders there, with their contents
    /// when `recursive`. Stops at the first failure; `overwrite` goes on past a folder that cannot be made, unless its
    /// contents are to be copied, too.
    bool copyContents(const Directory& target, bool recursive, bool overwrite,
                      std::shared_ptr<IProgress> progress) const;
    /// Opens the folder in the desktop's file manager; false when it is missing or relative.
    bool openInExplorer() const;

    /// Whether the last list that this thread asked for, by one of these, holds everything that was to be seen. Folders
    /// that could not be read to their end give what was read until then, and a link whose target the system does not
    /// tell counts as a file. What other implementations cannot read may not be told.
    static bool isLastListWhole() noexcept;
    /// What matches in this folder, in the system's order. Empty for a search string that is none.
    /// @{
    std::shared_ptr<FileSystemIterator> findContents(const String& pattern) const;
    std::shared_ptr<DirectoryIterator> findDirectories(const String& pattern) const;
    std::shared_ptr<FileIterator> findFiles(const String& pattern) const;
    /// @}
    /// What matches in this folder, folders first, and with `recursive` in all folders below, one after another. A
    /// link to a folder is followed, unless it leads to one that it lies in.
    /// @{
    std::vector<std::shared_ptr<const FileSystemItem>> collectContents(const String& pattern, bool recursive) const;
    std::vector<std::shared_ptr<const Directory>> collectDirectories(const String& pattern, bool recursive) const;
    std::vector<std::shared_ptr<const File>> collectFiles(const String& pattern, bool recursive) const;
    /// @}

    /// The registered creators, the oldest first.
    static std::list<std::shared_ptr<const ImplCreator>> creators;

   private:
    class OXA_HIDDEN ClassCreator;

    std::unique_ptr<IDirectoryImpl> m_impl;
};

}  // namespace Oxa_1_1

template <>
struct std::hash<Oxa_1_1::Directory> : std::hash<Oxa_1_1::FileSystemItem>
{
};
