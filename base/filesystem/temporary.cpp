#include "base/filesystem/temporary.h"

#include <utility>

#include "base/filesystem/detail/system_item.h"
#include "base/filesystem/detail/unique_name.h"
#include "base/platform/files/new_items.h"

namespace Oxa_1_1
{

namespace
{

/// Chance repeats a name hardly once; more often somebody makes it fail on purpose.
constexpr int ATTEMPTS = 100;

std::shared_ptr<const Directory> systemFolder() { return Directory::fromString(String(platform::temporaryFolder())); }

/// The item of a new name that `create` could make; empty when it could not for another reason than the name.
template <class Item, class Make>
std::shared_ptr<const Item> makeUnique(const String& prefix, const Make& itemOf, bool (*create)(TextView))
{
    for (int attempt = 0; attempt < ATTEMPTS; ++attempt)
    {
        std::shared_ptr<const Item> item = itemOf(detail::uniqueName(prefix));
        const String path = item != nullptr ? detail::seamPath(*item) : String();
        if (path.isNil()) return nullptr;
        if (create(path)) return item;
        if (!item->exists() && !platform::isLink(path)) return nullptr;
    }
    return nullptr;
}

std::shared_ptr<const Directory> makeFolder(const std::shared_ptr<const Directory>& parent, const String& prefix)
{
    if (parent == nullptr) return nullptr;
    return makeUnique<Directory>(
        prefix, [&](const String& name) { return parent->appendLevel(name); }, &platform::createPrivateFolder);
}

std::shared_ptr<const File> makeFile(const std::shared_ptr<const Directory>& parent, const String& prefix)
{
    if (parent == nullptr) return nullptr;
    return makeUnique<File>(
        prefix, [&](const String& name) { return File::fromString(*parent, name); }, &platform::createPrivateFile);
}

}  // namespace

TemporaryFolder::TemporaryFolder(const String& prefix) : m_directory(makeFolder(systemFolder(), prefix)) {}

// The current folder may change before the end.
TemporaryFolder::TemporaryFolder(const Directory& parent, const String& prefix)
    : m_directory(makeFolder(parent.makeAbsolute(), prefix))
{
}

TemporaryFolder::TemporaryFolder(TemporaryFolder&& other) noexcept : m_directory(std::exchange(other.m_directory, {}))
{
}

TemporaryFolder& TemporaryFolder::operator=(TemporaryFolder&& other) noexcept
{
    m_directory.swap(other.m_directory);
    return *this;
}

TemporaryFolder::~TemporaryFolder()
{
    if (m_directory != nullptr) m_directory->remove(true);
}

std::shared_ptr<const Directory> TemporaryFolder::keep() noexcept { return std::exchange(m_directory, {}); }

TemporaryFile::TemporaryFile(const String& prefix) : m_file(makeFile(systemFolder(), prefix)) {}

TemporaryFile::TemporaryFile(const Directory& parent, const String& prefix)
    : m_file(makeFile(parent.makeAbsolute(), prefix))
{
}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept : m_file(std::exchange(other.m_file, {})) {}

TemporaryFile& TemporaryFile::operator=(TemporaryFile&& other) noexcept
{
    m_file.swap(other.m_file);
    return *this;
}

TemporaryFile::~TemporaryFile()
{
    if (m_file != nullptr) m_file->remove();
}

std::shared_ptr<const File> TemporaryFile::keep() noexcept { return std::exchange(m_file, {}); }

}  // namespace Oxa_1_1
