#include "base/filesystem/file.h"

#include <utility>

#include "base/filesystem/detail/registry.h"
#include "base/filesystem/directory.h"
#include "base/module/module.h"
#include "base/object/creatable_class.h"
#include "base/platform/files/system_path.h"
#include "base/platform/never_destroyed.h"
#include "base/platform/system/shell.h"
#include "base/platform/system/wide_values.h"

namespace Oxa_1_1
{

/// Files are made from paths, never from the record alone.
class File::ClassCreator final : public CreateableUZClass<File>, public CreateableFromClass<File>
{
   public:
    ClassCreator() : CreateableUZClass(OXA_TEXT("File"), FileSystemItem::Class(), getThisModule(), ClassVersion()) {}
    std::shared_ptr<File> create() const override { return nullptr; }
};

const uZClass* File::Class()
{
    static const platform::NeverDestroyed<ClassCreator> record;
    return &record.get();
}

const uZClass* File::getClassType() const { return Class(); }

std::shared_ptr<File> File::fromString(const String& path)
{
    if (path.view().ends_with(OXA_TEXT('\\'))) return fromString(path.substr(0, path.length() - 1), Trimmed());
    return fromString(path, Trimmed());
}

std::shared_ptr<File> File::fromString(const String& path, Trimmed)
{
    return detail::createItem<File>(creators, [&](const ImplCreator& creator) { return creator.create(path); });
}

std::shared_ptr<File> File::fromString(const Directory& directory, const String& name)
{
    return detail::createItem<File>(creators,
                                    [&](const ImplCreator& creator) { return creator.create(directory, name); });
}

std::shared_ptr<File> File::fromUTF8(std::string_view path) { return fromString(String::fromUTF8(path)); }

std::shared_ptr<File> File::fromUTF8(std::u8string_view path) { return fromString(String(path)); }

std::shared_ptr<File> File::fromUTF8(const char* path) { return fromString(String::fromUTF8(path)); }

std::shared_ptr<File> File::fromPath(const std::filesystem::path& path)
{
    return fromString(platform::spellingOfSystemPath(path));
}

void File::initStatics() {}

void File::clearStatics() {}

File::File(std::unique_ptr<IFileImpl> impl) noexcept : m_impl(std::move(impl)) {}

File::File(const File& other) : FileSystemItem(other), m_impl(other.m_impl->duplicateImpl()) {}

File& File::operator=(const File& other)
{
    if (this != &other) m_impl = other.m_impl->duplicateImpl();
    return *this;
}

File::~File() = default;

bool File::exists() const { return m_impl->exists(); }

String File::getFullName() const { return m_impl->getFullName(); }

String File::getFullNameUnicode() const { return m_impl->getFullNameUnicode(); }

String File::getFullNameUnix() const { return m_impl->getFullNameUnix(); }

String File::getName() const { return m_impl->getName(); }

String File::getExtension() const { return m_impl->getExtension(); }

String File::getBaseName() const { return m_impl->getBaseName(); }

void File::setName(const String& name) { m_impl->setName(name); }

bool File::touch() const { return m_impl->touch(); }

bool File::remove() const { return m_impl->remove(); }

FileSystemItem::ComparisonResult File::equals(const FileSystemItem& other) const
{
    const auto* const file = dynamic_cast<const File*>(&other);
    return file != nullptr ? m_impl->equals(*file) : Undetermined;
}

bool File::stat(struct _stat64i32& result) const { return m_impl->stat(result); }

bool File::access(int mode) const { return m_impl->access(mode); }

bool File::getCreationTime(FILETIME* time) const { return m_impl->getCreationTime(time); }

bool File::getLastWriteTime(FILETIME* time) const { return m_impl->getLastWriteTime(time); }

std::shared_ptr<const Directory> File::getParent() const { return getDirectory(); }

bool File::isAbsolute() const { return m_impl->isAbsolute(); }

std::shared_ptr<const Directory> File::getDirectory() const { return m_impl->getDirectory(); }

std::shared_ptr<const File> File::makeAbsolute() const { return m_impl->makeAbsolute(); }

std::shared_ptr<const File> File::makeRelative(const Directory& reference) const
{
    return m_impl->makeRelative(reference);
}

std::shared_ptr<const File> File::replaceExtension(const String& extension) const
{
    return m_impl->replaceExtension(extension);
}

bool File::getFileSize(ULARGE_INTEGER& size) const { return m_impl->getFileSize(size); }

bool File::size(unsigned long long& bytes) const
{
    std::uint64_t number = 0;
    if (!platform::load([this](ULARGE_INTEGER& value) { return getFileSize(value); }, number)) return false;
    bytes = number;
    return true;
}

bool File::hasEqualSize(const File& other) const
{
    if (this == &other) return true;
    unsigned long long mine = 0;
    unsigned long long theirs = 0;
    return size(mine) && other.size(theirs) && mine == theirs;
}

bool File::createParentDirectories() const { return m_impl->createParentDirectories(); }

bool File::isReadOnly() const { return m_impl->isReadOnly(); }

int File::setReadOnly(bool readOnly) const { return m_impl->setReadOnly(readOnly); }

int File::setAsReadOnly() const { return m_impl->setAsReadOnly(); }

int File::unsetAsReadOnly() const { return m_impl->unsetAsReadOnly(); }

String File::getLockFilePath() const { return m_impl->getLockFilePath(); }

std::unique_ptr<std::ifstream> File::openRead(int mode) const { return m_impl->openRead(mode); }

std::unique_ptr<std::ofstream> File::openWrite(int mode) const { return m_impl->openWrite(mode); }

bool File::openWithDefaultApp() const { return m_impl->openWithDefaultApp(); }

bool File::openWithDefaultApp(const String& path) { return platform::openWithDefaultApp(path); }

bool File::showInExplorer() const { return m_impl->showInExplorer(); }

}  // namespace Oxa_1_1
