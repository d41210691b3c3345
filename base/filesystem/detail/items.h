#pragma once

#include <memory>

#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"

namespace Oxa_1_1
{
class OxaWindowsFileSystemDirectory;
class OxaWindowsFileSystemFile;
}  // namespace Oxa_1_1

/// From implementations to items and back.
namespace Oxa_1_1::detail
{

/// Null when the item is of another implementation.
const OxaWindowsFileSystemDirectory* windowsImpl(const Directory& directory) noexcept;
const OxaWindowsFileSystemFile* windowsImpl(const File& file) noexcept;

/// Empty for null.
std::shared_ptr<Directory> makeDirectory(SharedDirectory path);
std::shared_ptr<File> makeFile(std::unique_ptr<OxaWindowsFileSystemFile> impl);
/// Of any implementation, which must not be null.
/// @{
std::shared_ptr<Directory> makeItem(std::unique_ptr<IDirectoryImpl> impl);
std::shared_ptr<File> makeItem(std::unique_ptr<IFileImpl> impl);
/// @}
/// Of a copy of the implementation.
std::shared_ptr<File> makeFile(const OxaWindowsFileSystemFile& impl);

/// Whether the library's own creators are the first of both registries, so that nobody else is asked before them.
bool areOwnCreatorsFirst() noexcept;

}  // namespace Oxa_1_1::detail
