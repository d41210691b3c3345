#include <utility>

#include "base/filesystem/detail/item_memory.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/platform/never_destroyed.h"

namespace Oxa_1_1
{

namespace
{

using detail::SharedDirectory;

const SharedDirectory& emptyPath()
{
    static const platform::NeverDestroyed<SharedDirectory> path(std::make_shared<detail::ParsedDirectory>());
    return path.get();
}

std::unique_ptr<OxaWindowsFileSystemDirectory> makeImpl(SharedDirectory path)
{
    if (path == nullptr) return nullptr;
    return std::make_unique<OxaWindowsFileSystemDirectory>(std::move(path));
}

/// Of a folder of any implementation; null when it has none on this system.
SharedDirectory absolutePath(const Directory& directory)
{
    if (const auto* const impl = detail::windowsImpl(directory)) return detail::makeAbsolute(impl->path());
    const auto absolute = directory.isAbsolute() ? nullptr : directory.makeAbsolute();
    const auto* const impl = absolute != nullptr ? detail::windowsImpl(*absolute) : nullptr;
    return impl != nullptr ? impl->path() : nullptr;
}

}  // namespace

OxaWindowsFileSystemDirectory::OxaWindowsFileSystemDirectory() noexcept : m_path(emptyPath()) {}

OxaWindowsFileSystemDirectory::OxaWindowsFileSystemDirectory(SharedDirectory path) noexcept : m_path(std::move(path)) {}

OxaWindowsFileSystemDirectory::OxaWindowsFileSystemDirectory(OxaWindowsFileSystemDirectory&& other) noexcept
    : IDirectoryImpl(other), m_path(std::exchange(other.m_path, emptyPath()))
{
}

OxaWindowsFileSystemDirectory& OxaWindowsFileSystemDirectory::operator=(OxaWindowsFileSystemDirectory&& other) noexcept
{
    if (this != &other) m_path = std::exchange(other.m_path, emptyPath());
    return *this;
}

void* OxaWindowsFileSystemDirectory::operator new(std::size_t /*size*/)
{
    return detail::ItemMemory<OxaWindowsFileSystemDirectory>::allocate();
}

void OxaWindowsFileSystemDirectory::operator delete(void* memory) noexcept
{
    detail::ItemMemory<OxaWindowsFileSystemDirectory>::free(memory);
}

std::unique_ptr<OxaWindowsFileSystemDirectory> OxaWindowsFileSystemDirectory::fromString(const String& path)
{
    return makeImpl(detail::parseDirectory(path));
}

std::unique_ptr<OxaWindowsFileSystemDirectory> OxaWindowsFileSystemDirectory::fromStringLocal(const String& path)
{
    return makeImpl(detail::parseLocal(path));
}

std::unique_ptr<OxaWindowsFileSystemDirectory> OxaWindowsFileSystemDirectory::fromStringUNC(const String& path)
{
    return makeImpl(detail::parseShare(path));
}

bool OxaWindowsFileSystemDirectory::normalize()
{
    auto path = detail::copyForChange(*m_path);
    if (!detail::normalizeLevels(*path)) return false;
    m_path = std::move(path);
    return true;
}

std::unique_ptr<OxaWindowsFileSystemDirectory> OxaWindowsFileSystemDirectory::duplicate() const
{
    return std::make_unique<OxaWindowsFileSystemDirectory>(*this);
}

std::unique_ptr<IDirectoryImpl> OxaWindowsFileSystemDirectory::duplicateImpl() const { return duplicate(); }

const std::vector<String>& OxaWindowsFileSystemDirectory::getLevels() const
{
    return m_path->levelVector.of(m_path->levels);
}

Char OxaWindowsFileSystemDirectory::getDriveLetter() const noexcept { return m_path->driveLetter(); }

String OxaWindowsFileSystemDirectory::getRoot() const { return m_path->root; }

bool OxaWindowsFileSystemDirectory::isAbsolute() const { return m_path->absolute; }

String OxaWindowsFileSystemDirectory::getFullName() const { return detail::fullName(*m_path, detail::SEPARATOR); }

String OxaWindowsFileSystemDirectory::getFullNameUnicode() const { return detail::longName(*m_path); }

String OxaWindowsFileSystemDirectory::getFullNameUnix() const { return detail::fullName(*m_path, OXA_TEXT('/')); }

String OxaWindowsFileSystemDirectory::getName() const
{
    return m_path->levels.empty() ? String(OXA_TEXT(".")) : m_path->levels.back();
}

String OxaWindowsFileSystemDirectory::getBaseName() const
{
    return m_path->levels.empty() ? String::EMPTY : String(detail::splitName(m_path->levels.back()).baseName);
}

String OxaWindowsFileSystemDirectory::getExtension() const
{
    return m_path->levels.empty() ? String::EMPTY : String(detail::splitName(m_path->levels.back()).extension);
}

void OxaWindowsFileSystemDirectory::setName(const String& name)
{
    if (m_path->levels.empty() || !detail::isValidComponent(name)) return;
    auto path = detail::copyForChange(*m_path);
    path->levels.dropBack();
    path->levels.append(name);
    m_path = std::move(path);
}

std::shared_ptr<const Directory> OxaWindowsFileSystemDirectory::getParent() const
{
    if (m_path->levels.empty()) return nullptr;
    auto path = detail::copyForChange(*m_path);
    path->levels.dropBack();
    return detail::makeDirectory(std::move(path));
}

std::shared_ptr<const Directory> OxaWindowsFileSystemDirectory::makeAbsolute() const
{
    return detail::makeDirectory(detail::makeAbsolute(m_path));
}

std::shared_ptr<const Directory> OxaWindowsFileSystemDirectory::makeRelative(const Directory& reference) const
{
    const SharedDirectory path = detail::makeAbsolute(m_path);
    const SharedDirectory from = path != nullptr ? absolutePath(reference) : nullptr;
    if (from == nullptr)
    {
        FileSystemItem::reportError(OXA_TEXT("Failed to get absolute paths of this and the reference directory."));
        return nullptr;
    }
    return detail::makeDirectory(detail::makeRelative(path, *from));
}

std::shared_ptr<const Directory> OxaWindowsFileSystemDirectory::appendLevel(const String& name) const
{
    if (!detail::isValidComponent(name))
    {
        detail::refuseText(detail::INVALID_CHARACTERS, name);
        return nullptr;
    }
    return detail::makeDirectory(detail::appendLevel(*m_path, name));
}

std::shared_ptr<const Directory> OxaWindowsFileSystemDirectory::appendPath(const Directory& relative) const
{
    if (relative.isAbsolute())
    {
        detail::noteRefusal(relative.getFullName());
        FileSystemItem::reportError(OXA_TEXT("The path to be appended must be relative."));
        return nullptr;
    }
    const auto* const impl = detail::windowsImpl(relative);
    if (impl == nullptr) return nullptr;
    auto path = detail::copyForChange(*m_path);
    path->levels.append(impl->path()->levels);
    return detail::normalizeLevels(*path) ? detail::makeDirectory(std::move(path)) : nullptr;
}

std::shared_ptr<const Directory> OxaWindowsFileSystemDirectory::combine(const Directory& other) const
{
    const auto* const impl = detail::windowsImpl(other);
    if (impl == nullptr) return detail::makeDirectory(m_path);
    auto path = detail::copyForChange(*m_path);
    path->levels.append(impl->path()->levels);
    // Kept on purpose: levels that lead beyond the root stay as they are.
    static_cast<void>(detail::normalizeLevels(*path));
    return detail::makeDirectory(std::move(path));
}

std::shared_ptr<const File> OxaWindowsFileSystemDirectory::combine(const File& file) const
{
    const auto directory = file.getDirectory();
    if (directory == nullptr) return nullptr;
    return File::fromString(*combine(*directory), file.getName());
}

FileSystemItem::ComparisonResult OxaWindowsFileSystemDirectory::equals(const Directory& other) const
{
    if (const auto* const impl = detail::windowsImpl(other)) return equals(*impl);
    // The absolute form of a foreign path may be one of ours.
    const SharedDirectory theirs = isAbsolute() && !other.isAbsolute() ? absolutePath(other) : nullptr;
    return theirs != nullptr ? equals(OxaWindowsFileSystemDirectory(theirs)) : FileSystemItem::Undetermined;
}

FileSystemItem::ComparisonResult OxaWindowsFileSystemDirectory::equals(const OxaWindowsFileSystemDirectory& other) const
{
    SharedDirectory mine = m_path;
    SharedDirectory theirs = other.m_path;
    if (mine->absolute != theirs->absolute)
    {
        mine = detail::makeAbsolute(mine);
        theirs = mine != nullptr ? detail::makeAbsolute(theirs) : nullptr;
        if (theirs == nullptr) return FileSystemItem::Undetermined;
    }
    return detail::isSamePath(*mine, *theirs) ? FileSystemItem::Equal : FileSystemItem::Different;
}

bool OxaWindowsFileSystemDirectory::contains(const FileSystemItem& item) const
{
    return item.getFullName().view().starts_with(getFullName().view());
}

}  // namespace Oxa_1_1
