#include "extras/memory_file_system/memory_directory.h"

#include <type_traits>
#include <utility>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/search_string.h"

namespace Oxa_1_1
{

namespace
{

using SharedItem = std::shared_ptr<const FileSystemItem>;

const MemoryDirectory* memoryImpl(const Directory& directory)
{
    return dynamic_cast<const MemoryDirectory*>(directory.getImpl());
}

/// Hands out the items of one kind that were there when it was made.
template <class Base, class Item>
class Snapshot final : public Base
{
   public:
    Snapshot(const MemoryPlace& place, const String& pattern)
    {
        for (const auto& [name, isFolder] : place.volume->list(place.path))
        {
            if (!matchesSearchString(name, pattern)) continue;
            if (isFolder)
                add(makeMemoryDirectory(inside(place, name)));
            else
                add(makeMemoryFile(place, name));
        }
    }

    std::shared_ptr<const Item> getNext() override { return m_next < m_items.size() ? m_items[m_next++] : nullptr; }

   private:
    static MemoryPlace inside(const MemoryPlace& place, const String& name)
    {
        return {.volume = place.volume, .isAbsolute = place.isAbsolute, .path = place.pathOf(name)};
    }

    template <class T>
    void add(std::shared_ptr<T> item)
    {
        if constexpr (std::is_convertible_v<T*, const Item*>) m_items.push_back(std::move(item));
    }

    std::vector<std::shared_ptr<const Item>> m_items;
    std::size_t m_next = 0;
};

template <class Base, class Item>
std::shared_ptr<Base> find(const MemoryPlace& place, const String& pattern)
{
    if (isValidSearchString(pattern)) return std::make_shared<Snapshot<Base, Item>>(place, pattern);
    String message = OXA_TEXT("The file or directory search string '");
    FileSystemItem::reportError(message << pattern << OXA_TEXT("' contains invalid characters."));
    return nullptr;
}

template <class Item, class Source>
void append(std::vector<std::shared_ptr<const Item>>& items, const std::shared_ptr<Source>& source)
{
    for (const auto& item : source) items.push_back(item);
}

template <class Items>
void appendAll(Items& items, const Items& more)
{
    items.insert(items.end(), more.begin(), more.end());
}

}  // namespace

std::shared_ptr<Directory> makeMemoryDirectory(MemoryPlace place)
{
    return std::make_shared<Directory>(std::make_unique<MemoryDirectory>(std::move(place)));
}

MemoryDirectory::MemoryDirectory(MemoryPlace place) : m_place(std::move(place)) {}

std::optional<MemoryVolume::Status> MemoryDirectory::status() const
{
    const auto status = m_place.volume->status(m_place.path);
    return status && status->isFolder ? status : std::nullopt;
}

std::unique_ptr<IDirectoryImpl> MemoryDirectory::duplicateImpl() const
{
    return std::make_unique<MemoryDirectory>(*this);
}

std::shared_ptr<const Directory> MemoryDirectory::appendLevel(const String& name) const
{
    if (!isMemoryName(name)) return nullptr;
    MemoryPlace place = m_place;
    place.path.push_back(name);
    return makeMemoryDirectory(std::move(place));
}

std::shared_ptr<const Directory> MemoryDirectory::appendPath(const Directory& relative) const
{
    const auto* const impl = memoryImpl(relative);
    if (impl == nullptr || impl->isAbsolute()) return nullptr;
    MemoryPlace place = m_place;
    place.path.insert(place.path.end(), impl->m_place.path.begin(), impl->m_place.path.end());
    return place.normalize() ? makeMemoryDirectory(std::move(place)) : nullptr;
}

bool MemoryDirectory::create() const
{
    if (exists()) return true;
    if (const auto parent = getParent(); parent != nullptr && !parent->create()) return false;
    const MemoryError code = m_place.volume->createFolder(m_place.path);
    if (code == memory_error::NONE || code == memory_error::ALREADY_EXISTS) return true;
    reportMemoryFailure(OXA_TEXT("Failed to create the directory"), getFullName(), code);
    return false;
}

FileSystemItem::ComparisonResult MemoryDirectory::equals(const Directory& other) const
{
    const auto* const impl = memoryImpl(other);
    if (impl == nullptr) return FileSystemItem::Undetermined;
    return m_place.isSame(impl->m_place) ? FileSystemItem::Equal : FileSystemItem::Different;
}

bool MemoryDirectory::exists() const { return status().has_value(); }

bool MemoryDirectory::isDirectory() const { return exists(); }

bool MemoryDirectory::isEmpty() const { return exists() && m_place.volume->list(m_place.path).empty(); }

bool MemoryDirectory::contains(const FileSystemItem& item) const
{
    return item.getFullName().startsWith(getFullName());
}

std::shared_ptr<FileSystemIterator> MemoryDirectory::findContents(const String& pattern) const
{
    return find<FileSystemIterator, FileSystemItem>(m_place, pattern);
}

std::shared_ptr<DirectoryIterator> MemoryDirectory::findDirectories(const String& pattern) const
{
    return find<DirectoryIterator, Directory>(m_place, pattern);
}

std::shared_ptr<FileIterator> MemoryDirectory::findFiles(const String& pattern) const
{
    return find<FileIterator, File>(m_place, pattern);
}

std::vector<SharedItem> MemoryDirectory::collectContents(const String& pattern, bool recursive) const
{
    std::vector<SharedItem> items;
    append(items, findDirectories(pattern));
    append(items, findFiles(pattern));
    if (!recursive) return items;
    for (const auto& below : findDirectories("*")) appendAll(items, below->collectContents(pattern, true));
    return items;
}

std::vector<std::shared_ptr<const Directory>> MemoryDirectory::collectDirectories(const String& pattern,
                                                                                  bool recursive) const
{
    std::vector<std::shared_ptr<const Directory>> items;
    append(items, findDirectories(pattern));
    if (!recursive) return items;
    for (const auto& below : findDirectories("*")) appendAll(items, below->collectDirectories(pattern, true));
    return items;
}

std::vector<std::shared_ptr<const File>> MemoryDirectory::collectFiles(const String& pattern, bool recursive) const
{
    std::vector<std::shared_ptr<const File>> items;
    append(items, findFiles(pattern));
    if (!recursive) return items;
    for (const auto& below : findDirectories("*")) appendAll(items, below->collectFiles(pattern, true));
    return items;
}

std::shared_ptr<const Directory> MemoryDirectory::combine(const Directory& other) const
{
    MemoryPlace place = m_place;
    if (const auto* const impl = memoryImpl(other))
        place.path.insert(place.path.end(), impl->m_place.path.begin(), impl->m_place.path.end());
    place.normalize();
    return makeMemoryDirectory(std::move(place));
}

std::shared_ptr<const File> MemoryDirectory::combine(const File& file) const
{
    const auto folder = combine(*file.getDirectory());
    return makeMemoryFile(memoryImpl(*folder)->m_place, file.getName());
}

String MemoryDirectory::getFullName() const { return m_place.fullName(); }

String MemoryDirectory::getFullNameUnicode() const { return getFullName(); }

String MemoryDirectory::getFullNameUnix() const { return getFullName(); }

String MemoryDirectory::getName() const { return m_place.path.empty() ? String(OXA_TEXT(".")) : m_place.path.back(); }

void MemoryDirectory::setName(const String& name)
{
    if (!m_place.path.empty() && isMemoryName(name)) m_place.path.back() = name;
}

String MemoryDirectory::getExtension() const
{
    String baseName = String::EMPTY;
    String extension = String::EMPTY;
    if (!m_place.path.empty()) splitMemoryName(m_place.path.back(), baseName, extension);
    return extension;
}

String MemoryDirectory::getBaseName() const
{
    String baseName = String::EMPTY;
    String extension = String::EMPTY;
    if (!m_place.path.empty()) splitMemoryName(m_place.path.back(), baseName, extension);
    return baseName;
}

bool MemoryDirectory::touch() const
{
    return exists() ? m_place.volume->touch(m_place.path) == memory_error::NONE : create();
}

std::shared_ptr<const Directory> MemoryDirectory::getParent() const
{
    if (m_place.path.empty()) return nullptr;
    MemoryPlace place = m_place;
    place.path.pop_back();
    return makeMemoryDirectory(std::move(place));
}

bool MemoryDirectory::isAbsolute() const { return m_place.isAbsolute; }

std::shared_ptr<const Directory> MemoryDirectory::makeAbsolute() const
{
    auto place = m_place.absolute();
    return place ? makeMemoryDirectory(std::move(*place)) : nullptr;
}

std::shared_ptr<const Directory> MemoryDirectory::makeRelative(const Directory& reference) const
{
    const auto* const impl = memoryImpl(reference);
    auto place = impl != nullptr ? m_place.relativeTo(impl->m_place) : std::nullopt;
    return place ? makeMemoryDirectory(std::move(*place)) : nullptr;
}

bool MemoryDirectory::remove(bool recursive) const
{
    if (!exists()) return true;
    if (recursive && !makeMemoryDirectory(m_place)->removeContents(true)) return false;
    const MemoryError code = m_place.volume->remove(m_place.path);
    if (code != memory_error::NONE) reportMemoryFailure(OXA_TEXT("Failed to remove directory"), getFullName(), code);
    return code == memory_error::NONE;
}

bool MemoryDirectory::openInExplorer() const { return false; }

String MemoryDirectory::getRoot() const { return OXA_TEXT("mem:"); }

bool MemoryDirectory::stat(struct _stat64i32& result) const { return storeStatus(status(), result); }

bool MemoryDirectory::access(int mode) const { return allowsAccess(status(), mode); }

bool MemoryDirectory::getCreationTime(FILETIME* time) const { return storeCreationTime(status(), time); }

bool MemoryDirectory::getLastWriteTime(FILETIME* time) const { return storeLastWriteTime(status(), time); }

}  // namespace Oxa_1_1
