#pragma once

#include <memory>
#include <vector>

#include "base/export.h"
#include "base/filesystem/file_system_item.h"
#include "base/filesystem/iterators.h"

namespace Oxa_1_1
{

/// What a Directory is made of. Implementations are chosen by the creators that are registered with Directory; each
/// operation stands behind the one of the same name there.
class OXA_API IDirectoryImpl
{
   public:
    IDirectoryImpl() = default;
    IDirectoryImpl(const IDirectoryImpl&) = default;
    IDirectoryImpl& operator=(const IDirectoryImpl&) = default;
    virtual ~IDirectoryImpl() = default;
    /// An independent copy of the path.
    virtual std::unique_ptr<IDirectoryImpl> duplicateImpl() const = 0;

    /// Stands behind the operation of the same name of Directory.
    /// @{
    virtual std::shared_ptr<const Directory> appendLevel(const String& name) const = 0;
    virtual std::shared_ptr<const Directory> appendPath(const Directory& relative) const = 0;
    virtual bool create() const = 0;
    virtual FileSystemItem::ComparisonResult equals(const Directory& other) const = 0;
    virtual bool exists() const = 0;
    virtual bool isDirectory() const = 0;
    virtual bool isEmpty() const = 0;
    virtual bool contains(const FileSystemItem& item) const = 0;
    virtual std::shared_ptr<FileSystemIterator> findContents(const String& pattern) const = 0;
    virtual std::vector<std::shared_ptr<const FileSystemItem>> collectContents(const String& pattern,
                                                                               bool recursive) const = 0;
    virtual std::shared_ptr<DirectoryIterator> findDirectories(const String& pattern) const = 0;
    virtual std::vector<std::shared_ptr<const Directory>> collectDirectories(const String& pattern,
                                                                             bool recursive) const = 0;
    virtual std::shared_ptr<FileIterator> findFiles(const String& pattern) const = 0;
    virtual std::vector<std::shared_ptr<const File>> collectFiles(const String& pattern, bool recursive) const = 0;
    virtual std::shared_ptr<const Directory> combine(const Directory& other) const = 0;
    virtual std::shared_ptr<const File> combine(const File& file) const = 0;
    virtual String getFullName() const = 0;
    virtual String getFullNameUnicode() const = 0;
    virtual String getFullNameUnix() const = 0;
    virtual String getName() const = 0;
    virtual void setName(const String& name) = 0;
    virtual String getExtension() const = 0;
    virtual String getBaseName() const = 0;
    virtual bool touch() const = 0;
    virtual std::shared_ptr<const Directory> getParent() const = 0;
    virtual bool isAbsolute() const = 0;
    virtual std::shared_ptr<const Directory> makeAbsolute() const = 0;
    virtual std::shared_ptr<const Directory> makeRelative(const Directory& reference) const = 0;
    virtual bool remove(bool recursive) const = 0;
    virtual bool openInExplorer() const = 0;
    virtual String getRoot() const = 0;
    virtual bool stat(struct _stat64i32& result) const = 0;
    virtual bool access(int mode) const = 0;
    virtual bool getCreationTime(FILETIME* time) const = 0;
    virtual bool getLastWriteTime(FILETIME* time) const = 0;
    /// @}
};

}  // namespace Oxa_1_1
