#include "extras/memory_file_system/memory_file.h"

#include <cstring>
#include <iterator>
#include <utility>

#include "base/diagnostics/windows_error.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/progress.h"
#include "extras/memory_file_system/memory_directory.h"
#include "extras/memory_file_system/memory_stream.h"

namespace Oxa_1_1
{

namespace
{

using SharedItem = std::shared_ptr<const FileSystemItem>;

constexpr int SUCCESS = 0;
constexpr int FAILED = 18;

int copyCode(MemoryError code)
{
    switch (code)
    {
        case memory_error::NONE:
            return SUCCESS;
        case memory_error::ABORTED:
            return 24;
        case memory_error::DISK_FULL:
            return 221;
        default:
            return FAILED;
    }
}

const MemoryFile* memoryImpl(const File& file) { return dynamic_cast<const MemoryFile*>(file.getImpl()); }

}  // namespace

std::shared_ptr<File> makeMemoryFile(MemoryPlace folder, const String& name)
{
    return std::make_shared<File>(std::make_unique<MemoryFile>(std::move(folder), name));
}

MemoryFile::MemoryFile(MemoryPlace folder, const String& name) : m_folder(std::move(folder)), m_name(name) {}

MemoryPath MemoryFile::path() const { return m_folder.pathOf(m_name); }

std::optional<MemoryVolume::Status> MemoryFile::status() const
{
    const auto status = m_folder.volume->status(path());
    return status && !status->isFolder ? status : std::nullopt;
}

std::unique_ptr<IFileImpl> MemoryFile::duplicateImpl() const { return std::make_unique<MemoryFile>(*this); }

FileSystemItem::ComparisonResult MemoryFile::equals(const File& other) const
{
    const auto* const impl = memoryImpl(other);
    if (impl == nullptr) return FileSystemItem::Undetermined;
    const bool isSame = m_folder.isSame(impl->m_folder) && m_name.compareIgnoreCase(impl->m_name) == 0;
    return isSame ? FileSystemItem::Equal : FileSystemItem::Different;
}

bool MemoryFile::exists() const { return status().has_value(); }

bool MemoryFile::getFileSize(ULARGE_INTEGER& size) const
{
    const auto found = status();
    if (!found) return false;
    std::memcpy(static_cast<void*>(&size), &found->size, sizeof found->size);
    return true;
}

bool MemoryFile::touch() const
{
    return (exists() ? m_folder.volume->touch(path()) : m_folder.volume->write(path(), {})) == memory_error::NONE;
}

bool MemoryFile::createParentDirectories() const
{
    const auto folder = getDirectory()->makeAbsolute();
    return folder != nullptr && folder->create();
}

std::shared_ptr<const Directory> MemoryFile::getDirectory() const { return makeMemoryDirectory(m_folder); }

String MemoryFile::getBaseName() const
{
    String baseName;
    String extension;
    splitMemoryName(m_name, baseName, extension);
    return baseName;
}

String MemoryFile::getExtension() const
{
    String baseName;
    String extension;
    splitMemoryName(m_name, baseName, extension);
    return extension;
}

std::shared_ptr<const File> MemoryFile::replaceExtension(const String& extension) const
{
    String name = getBaseName();
    if (!extension.isEmpty()) name << OXA_TEXT('.') << extension;
    return makeMemoryFile(m_folder, name);
}

bool MemoryFile::isAbsolute() const { return m_folder.isAbsolute; }

std::shared_ptr<const File> MemoryFile::makeAbsolute() const
{
    auto folder = m_folder.absolute();
    return folder ? makeMemoryFile(std::move(*folder), m_name) : nullptr;
}

std::shared_ptr<const File> MemoryFile::makeRelative(const Directory& reference) const
{
    const auto* const impl = dynamic_cast<const MemoryDirectory*>(reference.getImpl());
    auto folder = impl != nullptr ? m_folder.relativeTo(impl->place()) : std::nullopt;
    return folder ? makeMemoryFile(std::move(*folder), m_name) : nullptr;
}

String MemoryFile::getFullName() const { return m_folder.fullName(m_name); }

String MemoryFile::getFullNameUnicode() const { return getFullName(); }

String MemoryFile::getFullNameUnix() const { return getFullName(); }

String MemoryFile::getName() const { return m_name; }

void MemoryFile::setName(const String& name) { m_name = name; }

bool MemoryFile::remove() const
{
    if (!exists()) return true;
    const MemoryError code = m_folder.volume->remove(path());
    if (code != memory_error::NONE) reportMemoryFailure(OXA_TEXT("Failed to delete file"), getFullName(), code);
    return code == memory_error::NONE;
}

int MemoryFile::writeCopy(std::string content, bool overwrite, IProgress* progress) const
{
    if (!overwrite && exists()) return FAILED;
    const int code = copyCode(m_folder.volume->write(path(), std::move(content)));
    if (code == SUCCESS && progress != nullptr) progress->onProgress(100.0);
    return code;
}

int MemoryFile::copyFrom(const File& source, bool overwrite, std::shared_ptr<IProgress> progress,
                         SharedItem& item) const
{
    const auto self = makeMemoryFile(m_folder, m_name);
    const auto* const impl = memoryImpl(source);
    if (impl != nullptr) return impl->copy(*self, overwrite, std::move(progress), item);
    if (m_folder.volume->handsOver()) return source.getImpl()->copy(*self, overwrite, std::move(progress), item);
    const auto stream = source.openRead();
    if (stream == nullptr || !*stream) return FAILED;
    item = self;
    return writeCopy({std::istreambuf_iterator<char>(*stream), {}}, overwrite, progress.get());
}

int MemoryFile::copy(const File& target, bool overwrite, std::shared_ptr<IProgress> progress, SharedItem& item) const
{
    const auto* const impl = memoryImpl(target);
    if (impl == nullptr)
        return target.getImpl()->copyFrom(*makeMemoryFile(m_folder, m_name), overwrite, std::move(progress), item);
    item = makeMemoryFile(impl->m_folder, impl->m_name);
    if (equals(target) == FileSystemItem::Equal) return FAILED;
    std::string content;
    const int code = copyCode(m_folder.volume->read(path(), content));
    return code == SUCCESS ? impl->writeCopy(std::move(content), overwrite, progress.get()) : code;
}

bool MemoryFile::move(const File& target, bool overwrite) const
{
    const auto* const impl = memoryImpl(target);
    if (impl == nullptr || impl->m_folder.volume != m_folder.volume) return false;
    if (target.exists() && !overwrite) return false;
    const MemoryError code = m_folder.volume->rename(path(), impl->path());
    if (code == memory_error::NONE) return true;
    String message = OXA_TEXT("Failed to move file '");
    message << getFullName() << OXA_TEXT("' to file '") << target.getFullName() << OXA_TEXT("' because: ")
            << getWindowsError(code);
    FileSystemItem::reportError(message);
    return false;
}

bool MemoryFile::showInExplorer() const { return false; }

bool MemoryFile::openWithDefaultApp() const { return false; }

int MemoryFile::setReadOnly(bool readOnly) const
{
    constexpr int NO_ATTRIBUTES = 168;
    return m_folder.volume->setReadOnly(path(), readOnly) == memory_error::NONE ? SUCCESS : NO_ATTRIBUTES;
}

int MemoryFile::setAsReadOnly() const { return setReadOnly(true); }

int MemoryFile::unsetAsReadOnly() const { return setReadOnly(false); }

bool MemoryFile::isReadOnly() const
{
    const auto found = status();
    return !found || found->isReadOnly;
}

bool MemoryFile::stat(struct _stat64i32& result) const { return storeStatus(status(), result); }

bool MemoryFile::access(int mode) const { return allowsAccess(status(), mode); }

bool MemoryFile::getCreationTime(FILETIME* time) const { return storeCreationTime(status(), time); }

bool MemoryFile::getLastWriteTime(FILETIME* time) const { return storeLastWriteTime(status(), time); }

String MemoryFile::getLockFilePath() const { return getFullName(); }

std::unique_ptr<std::ofstream> MemoryFile::openWrite(int mode) const
{
    return std::make_unique<MemoryOutput>(m_folder, m_name, static_cast<std::ios_base::openmode>(mode));
}

std::unique_ptr<std::ifstream> MemoryFile::openRead(int /*mode*/) const
{
    std::string content;
    const MemoryError code = m_folder.volume->read(path(), content);
    return std::make_unique<MemoryInput>(code, content);
}

}  // namespace Oxa_1_1
