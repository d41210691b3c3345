#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/tree_removal.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/files.h"
#include "base/platform/system/last_error.h"
#include "base/platform/system/shell.h"

namespace Oxa_1_1
{

bool OxaWindowsFileSystemDirectory::exists() const
{
    const auto attributes = platform::readAttributes(getFullNameUnicode());
    return attributes && (*attributes & platform::FOLDER) != 0;
}

bool OxaWindowsFileSystemDirectory::isDirectory() const { return exists(); }

bool OxaWindowsFileSystemDirectory::create() const
{
    if (!isAbsolute())
    {
        platform::failStep(platform::INVALID_PARAMETER, "createFolder", getFullName());
        detail::reportText(OXA_TEXT("The drive or network share '%ls' does not exist or is inaccessible."), getRoot());
        return false;
    }
    if (exists()) return true;
    if (const auto parent = getParent(); parent != nullptr && !parent->create()) return false;
    if (platform::createFolder(getFullNameUnicode()) || platform::lastError() == platform::ALREADY_EXISTS) return true;
    detail::reportFailure(OXA_TEXT("Failed to create the directory '%ls'.\r\nWindows error message: %ls"),
                          getFullName());
    return false;
}

bool OxaWindowsFileSystemDirectory::remove(bool recursive) const
{
    const String path = getFullNameUnicode();
    const auto attributes = platform::readAttributes(path);
    // Only some failures say that it is not there.
    const bool isUnknown = !attributes && !detail::saysMissing(platform::lastError());
    if (!isUnknown)
    {
        if (!attributes || (*attributes & platform::FOLDER) == 0) return true;
        platform::forgetFailedStep();
        // Of a link, nothing is removed but itself.
        if (recursive && !detail::makeDirectory(m_path)->removeContents(true)) return false;
        if (detail::removeEmptied([&] { return platform::removeFolder(path); })) return true;
    }
    detail::reportFolderThatStays(getFullName());
    return false;
}

bool OxaWindowsFileSystemDirectory::touch() const
{
    return exists() ? platform::touchFolder(getFullNameUnicode()) : create();
}

bool OxaWindowsFileSystemDirectory::openInExplorer() const
{
    return exists() && isAbsolute() && platform::openFolderWindow(getFullNameUnicode());
}

bool OxaWindowsFileSystemDirectory::stat(struct _stat64i32& result) const
{
    return detail::readStatus(getFullName(), result);
}

bool OxaWindowsFileSystemDirectory::access(int mode) const
{
    return exists() && detail::canAccess(getFullNameUnicode(), mode);
}

bool OxaWindowsFileSystemDirectory::getCreationTime(FILETIME* time) const
{
    return detail::readCreationTime(getFullNameUnicode(), time);
}

bool OxaWindowsFileSystemDirectory::getLastWriteTime(FILETIME* time) const
{
    return detail::readLastWriteTime(getFullNameUnicode(), time);
}

}  // namespace Oxa_1_1
