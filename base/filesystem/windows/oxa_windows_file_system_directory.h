#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "base/export.h"
#include "base/filesystem/directory_impl.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

namespace detail
{
struct ParsedDirectory;
}

/// A folder by its Windows spelling: a drive, a network share, the prefix of long paths, or relative. Copies share the
/// parsed path until one of them is changed.
class OXA_API OxaWindowsFileSystemDirectory final : public IDirectoryImpl
{
   public:
    /// Null, after a report, for a text that is no path. "." and ".." are collapsed in absolute paths on drives.
    static std::unique_ptr<OxaWindowsFileSystemDirectory> fromString(const String& path);
    /// Of a text without prefix.
    static std::unique_ptr<OxaWindowsFileSystemDirectory> fromStringLocal(const String& path);
    /// Of what follows the two backslashes of a network path.
    static std::unique_ptr<OxaWindowsFileSystemDirectory> fromStringUNC(const String& path);

    /// The relative path without levels.
    OxaWindowsFileSystemDirectory() noexcept;
    /// `path` must not be null.
    explicit OxaWindowsFileSystemDirectory(std::shared_ptr<const detail::ParsedDirectory> path) noexcept;
    OxaWindowsFileSystemDirectory(const OxaWindowsFileSystemDirectory& other) = default;
    OxaWindowsFileSystemDirectory& operator=(const OxaWindowsFileSystemDirectory& other) = default;
    /// `other` becomes the relative path without levels.
    /// @{
    OxaWindowsFileSystemDirectory(OxaWindowsFileSystemDirectory&& other) noexcept;
    OxaWindowsFileSystemDirectory& operator=(OxaWindowsFileSystemDirectory&& other) noexcept;
    /// @}
    ~OxaWindowsFileSystemDirectory() override = default;
    /// With room for the Directory.
    /// @{
    static void* operator new(std::size_t size);
    static void operator delete(void* memory) noexcept;
    /// @}

    /// Collapses "." and ".."; false, after a report, when that leads beyond the root.
    bool normalize();
    /// An independent copy of the path.
    std::unique_ptr<OxaWindowsFileSystemDirectory> duplicate() const;
    /// The parts of the path behind the root, outermost first.
    const std::vector<String>& getLevels() const;
    /// 0 for a path without drive.
    Char getDriveLetter() const noexcept;
    /// The parsed form; never null.
    const std::shared_ptr<const detail::ParsedDirectory>& path() const noexcept { return m_path; }

    std::unique_ptr<IDirectoryImpl> duplicateImpl() const override;
    std::shared_ptr<const Directory> appendLevel(const String& name) const override;
    std::shared_ptr<const Directory> appendPath(const Directory& relative) const override;
    bool create() const override;
    FileSystemItem::ComparisonResult equals(const Directory& other) const override;
    /// The same for a parsed path.
    FileSystemItem::ComparisonResult equals(const OxaWindowsFileSystemDirectory& other) const;
    bool exists() const override;
    bool isDirectory() const override;
    bool isEmpty() const override;
    bool contains(const FileSystemItem& item) const override;
    std::shared_ptr<FileSystemIterator> findContents(const String& pattern) const override;
    std::vector<std::shared_ptr<const FileSystemItem>> collectContents(const String& pattern,
                                                                       bool recursive) const override;
    std::shared_ptr<DirectoryIterator> findDirectories(const String& pattern) const override;
    std::vector<std::shared_ptr<const Directory>> collectDirectories(const String& pattern,
                                                                     bool recursive) const override;
    std::shared_ptr<FileIterator> findFiles(const String& pattern) const override;
    std::vector<std::shared_ptr<const File>> collectFiles(const String& pattern, bool recursive) const override;
    std::shared_ptr<const Directory> combine(const Directory& other) const override;
    std::shared_ptr<const File> combine(const File& file) const override;
    String getFullName() const override;
    String getFullNameUnicode() const override;
    String getFullNameUnix() const override;
    String getName() const override;
    void setName(const String& name) override;
    String getExtension() const override;
    String getBaseName() const override;
    bool touch() const override;
    std::shared_ptr<const Directory> getParent() const override;
    bool isAbsolute() const override;
    std::shared_ptr<const Directory> makeAbsolute() const override;
    std::shared_ptr<const Directory> makeRelative(const Directory& reference) const override;
    bool remove(bool recursive) const override;
    bool openInExplorer() const override;
    String getRoot() const override;
    bool stat(struct _stat64i32& result) const override;
    bool access(int mode) const override;
    bool getCreationTime(FILETIME* time) const override;
    bool getLastWriteTime(FILETIME* time) const override;

   private:
    OXA_HIDDEN void collectContentsInternal(std::vector<std::shared_ptr<const FileSystemItem>>& items,
                                            const String& pattern, bool recursive) const;
    OXA_HIDDEN void collectDirectoriesInternal(std::vector<std::shared_ptr<const Directory>>& items,
                                               const String& pattern, bool recursive) const;
    OXA_HIDDEN void collectFilesInternal(std::vector<std::shared_ptr<const File>>& items, const String& pattern,
                                         bool recursive) const;

    /// Never null.
    std::shared_ptr<const detail::ParsedDirectory> m_path;
};

}  // namespace Oxa_1_1
