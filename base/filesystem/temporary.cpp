#include "base/filesystem/temporary.h"

#include <utility>

#include "base/filesystem/detail/own_items.h"
#include "base/filesystem/detail/system_item.h"
#include "base/filesystem/detail/unique_name.h"
#include "base/platform/files/new_items.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

namespace
{

std::shared_ptr<const Directory> systemFolder() { return Directory::fromString(String(platform::temporaryFolder())); }

/// The item of a new name that `create` could make; empty when it could not.
template <class Item, class Make>
std::shared_ptr<const Item> makeUnique(const String& prefix, const Make& itemOf, bool (*create)(TextView))
{
    std::shared_ptr<const Item> item;
    const auto make = [&](const String& name)
    {
        item = itemOf(name);
        const String path = item != nullptr ? detail::seamPath(*item) : String();
        if (!path.isNil()) return create(path);
        platform::setLastError(platform::INVALID_NAME);
        return false;
    };
    if (!detail::makeWithUniqueName(prefix, make)) item = nullptr;
    return item;
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

TemporaryFolder::TemporaryFolder(TemporaryFolder&& other) noexcept : m_directory(other.keep()) {}

TemporaryFolder& TemporaryFolder::operator=(TemporaryFolder&& other) noexcept
{
    TemporaryFolder former(std::move(*this));
    m_directory = this == &other ? former.keep() : other.keep();
    return *this;
}

TemporaryFolder::~TemporaryFolder()
{
    if (m_directory != nullptr) detail::removeOwnFolder(*m_directory);
}

std::shared_ptr<const Directory> TemporaryFolder::keep() noexcept { return std::exchange(m_directory, {}); }

TemporaryFile::TemporaryFile(const String& prefix) : m_file(makeFile(systemFolder(), prefix)) {}

TemporaryFile::TemporaryFile(const Directory& parent, const String& prefix)
    : m_file(makeFile(parent.makeAbsolute(), prefix))
{
}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept : m_file(other.keep()) {}

TemporaryFile& TemporaryFile::operator=(TemporaryFile&& other) noexcept
{
    TemporaryFile former(std::move(*this));
    m_file = this == &other ? former.keep() : other.keep();
    return *this;
}

TemporaryFile::~TemporaryFile()
{
    if (m_file != nullptr) detail::removeOwnFile(*m_file);
}

std::shared_ptr<const File> TemporaryFile::keep() noexcept { return std::exchange(m_file, {}); }

}  // namespace Oxa_1_1
