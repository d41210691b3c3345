#pragma once

#include <vector>

#include "base/filesystem/directory_impl.h"
#include "extras/memory_file_system/memory_item.h"

namespace Oxa_1_1
{

/// A folder in a volume.
class MemoryDirectory final : public IDirectoryImpl
{
   public:
    explicit MemoryDirectory(MemoryPlace place);

    const MemoryPlace& place() const { return m_place; }

    std::unique_ptr<IDirectoryImpl> duplicateImpl() const override;
    std::shared_ptr<const Directory> appendLevel(const String& name) const override;
    std::shared_ptr<const Directory> appendPath(const Directory& relative) const override;
    bool create() const override;
    FileSystemItem::ComparisonResult equals(const Directory& other) const override;
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
    /// Of the folder itself; none for a file.
    std::optional<MemoryVolume::Status> status() const;

    MemoryPlace m_place;
};

}  // namespace Oxa_1_1
