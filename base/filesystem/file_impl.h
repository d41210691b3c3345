#pragma once

#include <fstream>
#include <memory>

#include "base/export.h"
#include "base/filesystem/file_system_item.h"

namespace Oxa_1_1
{

class File;

/// What a File is made of. Implementations are chosen by the creators that are registered with File; each operation
/// stands behind the one of the same name there.
class OXA_API IFileImpl
{
   public:
    IFileImpl() = default;
    IFileImpl(const IFileImpl&) = default;
    IFileImpl& operator=(const IFileImpl&) = default;
    virtual ~IFileImpl() = default;
    /// An independent copy of the path.
    virtual std::unique_ptr<IFileImpl> duplicateImpl() const = 0;

    /// Stands behind the operation of the same name of File.
    /// @{
    virtual FileSystemItem::ComparisonResult equals(const File& other) const = 0;
    virtual bool exists() const = 0;
    virtual bool getFileSize(ULARGE_INTEGER& size) const = 0;
    virtual bool touch() const = 0;
    virtual bool createParentDirectories() const = 0;
    virtual std::shared_ptr<const Directory> getDirectory() const = 0;
    virtual String getBaseName() const = 0;
    virtual String getExtension() const = 0;
    virtual std::shared_ptr<const File> replaceExtension(const String& extension) const = 0;
    virtual bool isAbsolute() const = 0;
    virtual std::shared_ptr<const File> makeAbsolute() const = 0;
    virtual std::shared_ptr<const File> makeRelative(const Directory& reference) const = 0;
    virtual String getFullName() const = 0;
    virtual String getFullNameUnicode() const = 0;
    virtual String getFullNameUnix() const = 0;
    virtual String getName() const = 0;
    virtual void setName(const String& name) = 0;
    virtual bool remove() const = 0;
    /// @}
    /// Copies from a file of any implementation to this one. `item` becomes this file. The codes of File::copy().
    virtual int copyFrom(const File& source, bool overwrite, std::shared_ptr<IProgress> progress,
                         std::shared_ptr<const FileSystemItem>& item) const = 0;
    /// The same from this file to another, which `item` becomes.
    virtual int copy(const File& target, bool overwrite, std::shared_ptr<IProgress> progress,
                     std::shared_ptr<const FileSystemItem>& item) const = 0;
    /// Stands behind the operation of the same name of File.
    /// @{
    virtual bool move(const File& target, bool overwrite) const = 0;
    virtual bool showInExplorer() const = 0;
    virtual bool openWithDefaultApp() const = 0;
    virtual int setReadOnly(bool readOnly) const = 0;
    virtual int setAsReadOnly() const = 0;
    virtual int unsetAsReadOnly() const = 0;
    virtual bool isReadOnly() const = 0;
    virtual bool stat(struct _stat64i32& result) const = 0;
    virtual bool access(int mode) const = 0;
    virtual bool getCreationTime(FILETIME* time) const = 0;
    virtual bool getLastWriteTime(FILETIME* time) const = 0;
    virtual String getLockFilePath() const = 0;
    virtual std::unique_ptr<std::ofstream> openWrite(int mode) const = 0;
    virtual std::unique_ptr<std::ifstream> openRead(int mode) const = 0;
    /// @}
};

}  // namespace Oxa_1_1
