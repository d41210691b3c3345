#pragma once

#include <cstddef>
#include <memory>

#include "base/export.h"
#include "base/filesystem/file_impl.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

namespace detail
{
struct SplitName;
}

/// A file in a folder by its Windows spelling. The name is kept split at its last period.
class OXA_API OxaWindowsFileSystemFile final : public IFileImpl
{
    class ProtectorTag
    {
        friend OxaWindowsFileSystemFile;
        ProtectorTag() = default;
    };

   public:
    /// Null for an empty text and, after a report, for one that is no path.
    static std::unique_ptr<OxaWindowsFileSystemFile> fromString(const String& path);
    /// Null also when the folder is of another implementation.
    static std::unique_ptr<OxaWindowsFileSystemFile> fromString(const Directory& directory, const String& name);
    /// The name must be checked already.
    static std::unique_ptr<OxaWindowsFileSystemFile> fromCheckedName(const OxaWindowsFileSystemDirectory& directory,
                                                                     TextView name);

    /// Of no name, in the relative folder without levels.
    explicit OxaWindowsFileSystemFile(ProtectorTag) noexcept {}
    /// Of a name that was checked.
    OxaWindowsFileSystemFile(ProtectorTag, const OxaWindowsFileSystemDirectory& directory, TextView name);

    /// With room for the File.
    /// @{
    static void* operator new(std::size_t size);
    static void operator delete(void* memory) noexcept;
    /// @}

    /// An independent copy of the path.
    std::unique_ptr<OxaWindowsFileSystemFile> duplicate() const;
    /// The folder part.
    const OxaWindowsFileSystemDirectory& directory() const noexcept { return m_directory; }

    std::unique_ptr<IFileImpl> duplicateImpl() const override;
    FileSystemItem::ComparisonResult equals(const File& other) const override;
    bool exists() const override;
    bool getFileSize(ULARGE_INTEGER& size) const override;
    bool touch() const override;
    bool createParentDirectories() const override;
    std::shared_ptr<const Directory> getDirectory() const override;
    String getBaseName() const override;
    String getExtension() const override;
    std::shared_ptr<const File> replaceExtension(const String& extension) const override;
    bool isAbsolute() const override;
    std::shared_ptr<const File> makeAbsolute() const override;
    std::shared_ptr<const File> makeRelative(const Directory& reference) const override;
    String getFullName() const override;
    String getFullNameUnicode() const override;
    String getFullNameUnix() const override;
    String getName() const override;
    void setName(const String& name) override;
    bool remove() const override;
    int copyFrom(const File& source, bool overwrite, std::shared_ptr<IProgress> progress,
                 std::shared_ptr<const FileSystemItem>& item) const override;
    int copy(const File& target, bool overwrite, std::shared_ptr<IProgress> progress,
             std::shared_ptr<const FileSystemItem>& item) const override;
    bool move(const File& target, bool overwrite) const override;
    bool showInExplorer() const override;
    bool openWithDefaultApp() const override;
    int setReadOnly(bool readOnly) const override;
    int setAsReadOnly() const override;
    int unsetAsReadOnly() const override;
    bool isReadOnly() const override;
    bool stat(struct _stat64i32& result) const override;
    bool access(int mode) const override;
    bool getCreationTime(FILETIME* time) const override;
    bool getLastWriteTime(FILETIME* time) const override;
    String getLockFilePath() const override;
    std::unique_ptr<std::ofstream> openWrite(int mode) const override;
    std::unique_ptr<std::ifstream> openRead(int mode) const override;

   private:
    OXA_HIDDEN OxaWindowsFileSystemFile(const OxaWindowsFileSystemDirectory& directory, const detail::SplitName& name);

    /// The same name in another folder.
    OXA_HIDDEN std::shared_ptr<const File> inDirectory(const std::shared_ptr<const Directory>& directory) const;

    String m_baseName;
    OxaWindowsFileSystemDirectory m_directory;
    String m_extension;
};

}  // namespace Oxa_1_1
