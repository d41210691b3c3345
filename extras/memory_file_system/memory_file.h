#pragma once

#include <string>

#include "base/filesystem/file_impl.h"
#include "extras/memory_file_system/memory_item.h"

namespace Oxa_1_1
{

/// A file in a volume.
class MemoryFile final : public IFileImpl
{
   public:
    MemoryFile(MemoryPlace folder, const String& name);

    const MemoryPlace& folder() const { return m_folder; }

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
    MemoryPath path() const;
    /// Of the file itself; none for a folder.
    std::optional<MemoryVolume::Status> status() const;
    int writeCopy(std::string content, bool overwrite, IProgress* progress) const;

    MemoryPlace m_folder;
    String m_name;
};

}  // namespace Oxa_1_1
