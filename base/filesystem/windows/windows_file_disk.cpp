#include <algorithm>
#include <ios>
#include <optional>
#include <vector>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/result_codes.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/files.h"
#include "base/platform/files/system_path.h"
#include "base/platform/system/last_error.h"
#include "base/platform/system/shell.h"
#include "base/platform/system/wide_values.h"

namespace Oxa_1_1
{

namespace
{

/// 0, also when the attribute cannot be written.
int changeReadOnly(const String& path, bool readOnly)
{
    const auto attributes = platform::readAttributes(path);
    if (!attributes) return detail::NO_ATTRIBUTES;
    const DWORD wanted = readOnly ? *attributes | platform::READ_ONLY : *attributes & ~platform::READ_ONLY;
    if (wanted != *attributes) platform::writeAttributes(path, wanted);
    return detail::SUCCESS;
}

/// None when the system does not tell, and leaves the reason. A link that leads nowhere is there.
std::optional<bool> isFileThere(const String& path)
{
    if (const auto attributes = platform::readAttributes(path)) return (*attributes & platform::FOLDER) == 0;
    const DWORD reason = platform::lastError();
    if (platform::isLink(path)) return true;
    if (!detail::saysMissing(reason)) platform::setLastError(reason);
    return detail::saysMissing(platform::lastError()) ? std::optional(false) : std::nullopt;
}

/// An input stream neither appends nor truncates.
constexpr auto OUTPUT_ONLY = std::ios_base::out | std::ios_base::app | std::ios_base::trunc;

template <class Stream>
std::unique_ptr<Stream> openStream(const String& path, std::ios_base::openmode mode)
{
    auto stream = std::make_unique<Stream>();
    platform::openStream(*stream, path, mode);
    if (!*stream) platform::noteFailedStep("openFile", path);
    return stream;
}

}  // namespace

bool OxaWindowsFileSystemFile::exists() const { return isFileThere(getFullNameUnicode()).value_or(false); }

bool OxaWindowsFileSystemFile::getFileSize(ULARGE_INTEGER& size) const
{
    const String path = getFullNameUnicode();
    const auto information = platform::readInformation(path);
    // A link that leads nowhere is there, and holds nothing.
    const bool mayBeLost = !information && detail::saysLost(platform::lastError());
    if (!information && !(mayBeLost && platform::isLink(path))) return false;
    platform::store(information ? information->size : 0, size);
    return true;
}

bool OxaWindowsFileSystemFile::getCreationTime(FILETIME* time) const
{
    return detail::readCreationTime(getFullNameUnicode(), time);
}

bool OxaWindowsFileSystemFile::getLastWriteTime(FILETIME* time) const
{
    return detail::readLastWriteTime(getFullNameUnicode(), time);
}

bool OxaWindowsFileSystemFile::stat(struct _stat64i32& result) const
{
    return detail::readStatus(getFullName(), result);
}

bool OxaWindowsFileSystemFile::access(int mode) const
{
    return exists() && detail::canAccess(getFullNameUnicode(), mode);
}

bool OxaWindowsFileSystemFile::touch() const
{
    if (platform::touchFile(getFullNameUnicode()) == platform::Touch::FAILED) return false;
    platform::flushFile(getFullName());
    return true;
}

bool OxaWindowsFileSystemFile::remove() const
{
    const String path = getFullNameUnicode();
    const std::optional<bool> isThere = isFileThere(path);
    if (isThere && (!*isThere || platform::deleteFile(path))) return true;
    detail::reportFailure(OXA_TEXT("Failed to delete file '%ls'.\r\nWindows error message: %ls"), getFullName());
    return false;
}

bool OxaWindowsFileSystemFile::isReadOnly() const
{
    // Kept on purpose: a file that is missing counts as read-only.
    const auto attributes = platform::readAttributes(getFullName());
    return !attributes || (*attributes & platform::READ_ONLY) != 0;
}

int OxaWindowsFileSystemFile::setReadOnly(bool readOnly) const
{
    return readOnly ? setAsReadOnly() : unsetAsReadOnly();
}

int OxaWindowsFileSystemFile::setAsReadOnly() const { return changeReadOnly(getFullName(), true); }

int OxaWindowsFileSystemFile::unsetAsReadOnly() const { return changeReadOnly(getFullName(), false); }

String OxaWindowsFileSystemFile::getLockFilePath() const { return getFullName(); }

std::unique_ptr<std::ifstream> OxaWindowsFileSystemFile::openRead(int mode) const
{
    const auto bits = static_cast<std::ios_base::openmode>(mode) & ~OUTPUT_ONLY;
    return openStream<std::ifstream>(getFullName(), bits | std::ios_base::in);
}

std::unique_ptr<std::ofstream> OxaWindowsFileSystemFile::openWrite(int mode) const
{
    const auto bits = static_cast<std::ios_base::openmode>(mode) & ~std::ios_base::in;
    return openStream<std::ofstream>(getFullName(), bits | std::ios_base::out);
}

bool OxaWindowsFileSystemFile::openWithDefaultApp() const { return File::openWithDefaultApp(getFullName()); }

bool OxaWindowsFileSystemFile::showInExplorer() const
{
    return exists() && isAbsolute() && platform::showInFolder(getFullNameUnicode());
}

bool OxaWindowsFileSystemFile::createParentDirectories() const
{
    std::vector<std::shared_ptr<const Directory>> ancestors;
    for (auto ancestor = getDirectory(); ancestor != nullptr; ancestor = ancestor->getParent())
        ancestors.push_back(ancestor);
    std::ranges::reverse(ancestors);
    for (const auto& ancestor : ancestors)
        if (!ancestor->exists() && !ancestor->create()) return false;
    return true;
}

}  // namespace Oxa_1_1
