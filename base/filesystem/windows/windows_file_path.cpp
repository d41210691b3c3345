#include <utility>

#include "base/filesystem/detail/item_memory.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"

namespace Oxa_1_1
{

namespace
{

/// The number of units up to and including the last separator, which a ":" is here, too; 0 when there is none.
std::size_t directoryLength(TextView path)
{
    const std::size_t separator = path.find_last_of(OXA_TEXT("\\/:"));
    return separator == TextView::npos ? 0 : separator + 1;
}

bool checkFileName(const String& name)
{
    if (detail::isValidFileName(name)) return true;
    detail::refuseText(detail::INVALID_CHARACTERS, name);
    return false;
}

}  // namespace

OxaWindowsFileSystemFile::OxaWindowsFileSystemFile(ProtectorTag, const OxaWindowsFileSystemDirectory& directory,
                                                   TextView name)
    : OxaWindowsFileSystemFile(directory, detail::splitName(name))
{
}

// NOLINTNEXTLINE(modernize-pass-by-value): one copy, and no move
OxaWindowsFileSystemFile::OxaWindowsFileSystemFile(const OxaWindowsFileSystemDirectory& directory,
                                                   const detail::SplitName& name)
    : m_baseName(name.baseName), m_directory(directory), m_extension(name.extension)
{
}

void* OxaWindowsFileSystemFile::operator new(std::size_t /*size*/)
{
    return detail::ItemMemory<OxaWindowsFileSystemFile>::allocate();
}

void OxaWindowsFileSystemFile::operator delete(void* memory) noexcept
{
    detail::ItemMemory<OxaWindowsFileSystemFile>::free(memory);
}

std::unique_ptr<OxaWindowsFileSystemFile> OxaWindowsFileSystemFile::fromCheckedName(
    const OxaWindowsFileSystemDirectory& directory, TextView name)
{
    return std::make_unique<OxaWindowsFileSystemFile>(ProtectorTag(), directory, name);
}

std::unique_ptr<OxaWindowsFileSystemFile> OxaWindowsFileSystemFile::fromString(const String& path)
{
    if (path.isEmpty())
    {
        detail::noteRefusal(path);
        return nullptr;
    }
    const std::size_t split = directoryLength(path);
    const String name = path.view().substr(split);
    if (split == 0)
    {
        if (!checkFileName(name)) return nullptr;
        return std::make_unique<OxaWindowsFileSystemFile>(ProtectorTag(), OxaWindowsFileSystemDirectory(), name);
    }
    const auto directory = Directory::fromString(path.view().substr(0, split));
    if (directory == nullptr) return nullptr;
    return fromString(*directory, name);
}

std::unique_ptr<OxaWindowsFileSystemFile> OxaWindowsFileSystemFile::fromString(const Directory& directory,
                                                                               const String& name)
{
    if (!checkFileName(name)) return nullptr;
    const auto* const impl = detail::windowsImpl(directory);
    if (impl == nullptr) return nullptr;
    return fromCheckedName(*impl, name);
}

std::unique_ptr<OxaWindowsFileSystemFile> OxaWindowsFileSystemFile::duplicate() const
{
    return std::make_unique<OxaWindowsFileSystemFile>(*this);
}

std::unique_ptr<IFileImpl> OxaWindowsFileSystemFile::duplicateImpl() const { return duplicate(); }

FileSystemItem::ComparisonResult OxaWindowsFileSystemFile::equals(const File& other) const
{
    const auto* const impl = detail::windowsImpl(other);
    if (impl == nullptr) return FileSystemItem::Undetermined;
    const auto result = m_directory.equals(impl->m_directory);
    if (result != FileSystemItem::Equal) return result;
    const bool isSame =
        m_baseName.compareIgnoreCase(impl->m_baseName) == 0 && m_extension.compareIgnoreCase(impl->m_extension) == 0;
    return isSame ? FileSystemItem::Equal : FileSystemItem::Different;
}

bool OxaWindowsFileSystemFile::isAbsolute() const { return m_directory.isAbsolute(); }

std::shared_ptr<const Directory> OxaWindowsFileSystemFile::getDirectory() const
{
    return detail::makeDirectory(m_directory.path());
}

String OxaWindowsFileSystemFile::getBaseName() const { return m_baseName; }

String OxaWindowsFileSystemFile::getExtension() const { return m_extension; }

String OxaWindowsFileSystemFile::getName() const
{
    if (m_extension.isEmpty()) return m_baseName;
    Text name;
    name.reserve(m_baseName.view().size() + m_extension.view().size() + 1);
    name.append(m_baseName.view()).append(1, OXA_TEXT('.')).append(m_extension.view());
    return String(std::move(name));
}

void OxaWindowsFileSystemFile::setName(const String& name)
{
    const detail::SplitName parts = detail::splitName(name);
    m_baseName = name.isNil() ? String::NIL : String(parts.baseName);
    m_extension = parts.extension;
}

String OxaWindowsFileSystemFile::getFullName() const
{
    return detail::fullName(*m_directory.path(), detail::SEPARATOR, getName());
}

String OxaWindowsFileSystemFile::getFullNameUnicode() const { return detail::longName(*m_directory.path(), getName()); }

String OxaWindowsFileSystemFile::getFullNameUnix() const
{
    return detail::fullName(*m_directory.path(), OXA_TEXT('/'), getName());
}

std::shared_ptr<const File> OxaWindowsFileSystemFile::inDirectory(
    const std::shared_ptr<const Directory>& directory) const
{
    const auto* const impl = directory != nullptr ? detail::windowsImpl(*directory) : nullptr;
    if (impl == nullptr) return nullptr;
    auto file = duplicate();
    file->m_directory = *impl;
    return detail::makeFile(std::move(file));
}

std::shared_ptr<const File> OxaWindowsFileSystemFile::makeAbsolute() const
{
    return inDirectory(m_directory.makeAbsolute());
}

std::shared_ptr<const File> OxaWindowsFileSystemFile::makeRelative(const Directory& reference) const
{
    return inDirectory(m_directory.makeRelative(reference));
}

std::shared_ptr<const File> OxaWindowsFileSystemFile::replaceExtension(const String& extension) const
{
    auto file = duplicate();
    file->m_extension = extension;
    return detail::makeFile(std::move(file));
}

}  // namespace Oxa_1_1
