#include "base/filesystem/directory.h"

#include <utility>

#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/detail/registry.h"
#include "base/filesystem/file.h"
#include "base/module/module.h"
#include "base/object/creatable_class.h"
#include "base/platform/files/system_path.h"
#include "base/platform/never_destroyed.h"
#include "base/text/utf8.h"

namespace Oxa_1_1
{

/// Folders are made from paths, never from the record alone.
class Directory::ClassCreator final : public CreateableUZClass<Directory>, public CreateableFromClass<Directory>
{
   public:
    ClassCreator() : CreateableUZClass(OXA_TEXT("Directory"), FileSystemItem::Class(), getThisModule(), ClassVersion())
    {
    }
    std::shared_ptr<Directory> create() const override { return nullptr; }
};

const uZClass* Directory::Class()
{
    static const platform::NeverDestroyed<ClassCreator> record;
    return &record.get();
}

const uZClass* Directory::getClassType() const { return Class(); }

std::shared_ptr<Directory> Directory::fromString(const String& path)
{
    return detail::createItem<Directory>(creators, [&](const ImplCreator& creator) { return creator(path); });
}

std::shared_ptr<Directory> Directory::fromUTF8(const char* path) { return fromString(UTF8Interface(path)); }

std::shared_ptr<Directory> Directory::fromUTF8(const std::string& path) { return fromString(text::decodeUtf8(path)); }

std::shared_ptr<Directory> Directory::fromPath(const std::filesystem::path& path)
{
    return fromString(platform::spellingOfSystemPath(path));
}

void Directory::initStatics() {}

void Directory::clearStatics() {}

Directory::Directory(std::unique_ptr<IDirectoryImpl> impl) noexcept : m_impl(std::move(impl)) {}

Directory::Directory(const Directory& other) : FileSystemItem(other), m_impl(other.m_impl->duplicateImpl()) {}

Directory& Directory::operator=(const Directory& other)
{
    if (this != &other) m_impl = other.m_impl->duplicateImpl();
    return *this;
}

Directory::~Directory() = default;

bool Directory::exists() const { return m_impl->exists(); }

bool Directory::isDirectory() const { return m_impl->isDirectory(); }

String Directory::getFullName() const { return m_impl->getFullName(); }

String Directory::getFullNameUnicode() const { return m_impl->getFullNameUnicode(); }

String Directory::getFullNameUnix() const { return m_impl->getFullNameUnix(); }

String Directory::getName() const { return m_impl->getName(); }

String Directory::getExtension() const { return m_impl->getExtension(); }

String Directory::getBaseName() const { return m_impl->getBaseName(); }

String Directory::getRoot() const { return m_impl->getRoot(); }

void Directory::setName(const String& name) { m_impl->setName(name); }

bool Directory::touch() const { return m_impl->touch(); }

bool Directory::create() const { return m_impl->create(); }

bool Directory::remove() const { return remove(false); }

bool Directory::remove(bool recursive) const { return m_impl->remove(recursive); }

FileSystemItem::ComparisonResult Directory::equals(const FileSystemItem& other) const
{
    const auto* const directory = dynamic_cast<const Directory*>(&other);
    return directory != nullptr ? m_impl->equals(*directory) : Undetermined;
}

bool Directory::stat(struct _stat64i32& result) const { return m_impl->stat(result); }

bool Directory::access(int mode) const { return m_impl->access(mode); }

bool Directory::getCreationTime(FILETIME* time) const { return m_impl->getCreationTime(time); }

bool Directory::getLastWriteTime(FILETIME* time) const { return m_impl->getLastWriteTime(time); }

std::shared_ptr<const Directory> Directory::getParent() const { return m_impl->getParent(); }

bool Directory::isAbsolute() const { return m_impl->isAbsolute(); }

std::shared_ptr<const Directory> Directory::makeAbsolute() const { return m_impl->makeAbsolute(); }

std::shared_ptr<const Directory> Directory::makeRelative(const Directory& reference) const
{
    return m_impl->makeRelative(reference);
}

std::shared_ptr<const Directory> Directory::appendLevel(const String& name) const { return m_impl->appendLevel(name); }

std::shared_ptr<const Directory> Directory::appendPath(const Directory& relative) const
{
    return m_impl->appendPath(relative);
}

std::shared_ptr<const Directory> Directory::combine(const Directory& other) const { return m_impl->combine(other); }

std::shared_ptr<const File> Directory::combine(const File& file) const { return m_impl->combine(file); }

bool Directory::contains(const FileSystemItem& item) const { return m_impl->contains(item); }

bool Directory::isEmpty() const { return m_impl->isEmpty(); }

bool Directory::openInExplorer() const { return m_impl->openInExplorer(); }

bool Directory::isLastListWhole() noexcept { return detail::ListScope::wasWhole(); }

std::shared_ptr<FileSystemIterator> Directory::findContents(const String& pattern) const
{
    const detail::ListScope scope;
    return m_impl->findContents(pattern);
}

std::shared_ptr<DirectoryIterator> Directory::findDirectories(const String& pattern) const
{
    const detail::ListScope scope;
    return m_impl->findDirectories(pattern);
}

std::shared_ptr<FileIterator> Directory::findFiles(const String& pattern) const
{
    const detail::ListScope scope;
    return m_impl->findFiles(pattern);
}

std::vector<std::shared_ptr<const FileSystemItem>> Directory::collectContents(const String& pattern,
                                                                              bool recursive) const
{
    const detail::ListScope scope;
    return m_impl->collectContents(pattern, recursive);
}

std::vector<std::shared_ptr<const Directory>> Directory::collectDirectories(const String& pattern, bool recursive) const
{
    const detail::ListScope scope;
    return m_impl->collectDirectories(pattern, recursive);
}

std::vector<std::shared_ptr<const File>> Directory::collectFiles(const String& pattern, bool recursive) const
{
    const detail::ListScope scope;
    return m_impl->collectFiles(pattern, recursive);
}

}  // namespace Oxa_1_1
