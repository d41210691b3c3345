#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/hand_over.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/result_codes.h"
#include "base/filesystem/progress.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/files.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

namespace
{

using SharedItem = std::shared_ptr<const FileSystemItem>;

constexpr DWORD ERROR_OF_FULL_DISK = 112;

int codeOfLastError()
{
    switch (platform::lastError())
    {
        case ERROR_OF_FULL_DISK:
            return detail::DISK_FULL;
        case platform::REQUEST_ABORTED:
            return detail::ABORTED;
        default:
            return detail::FAILED;
    }
}

/// Of a file that is there all the same. What merely cannot be asked may be somewhere.
bool leadsNowhere(const String& link)
{
    if (!platform::isLink(link) || platform::readAttributes(link)) return false;
    return detail::saysLost(platform::lastError());
}

int copyOnDisk(const OxaWindowsFileSystemFile& source, const OxaWindowsFileSystemFile& target, bool overwrite,
               IProgress* progress)
{
    platform::CopyProgress report;
    if (progress != nullptr)
    {
        report = [progress](std::uint64_t done, std::uint64_t total)
        { progress->onProgress(static_cast<double>(done) * 100.0 / static_cast<double>(total)); };
    }
    const String from = source.getFullNameUnicode();
    const String to = target.getFullNameUnicode();
    if (platform::copyFile(from, to, !overwrite, report)) return detail::SUCCESS;
    const int code = codeOfLastError();
    if (!leadsNowhere(from)) return code;
    // There is no content, so the link itself is copied; content of others does not give way to it.
    if (!platform::copyLink(from, to, !overwrite || !leadsNowhere(to))) return codeOfLastError();
    if (report) report(0, 0);
    return detail::SUCCESS;
}

/// Through streams, as when neither side can do it alone.
int copyContent(const File& source, const File& target, SharedItem& item)
{
    const int code = detail::copyThroughStreams(source, target);
    if (code == detail::SUCCESS) item = std::make_shared<File>(target);
    return code;
}

/// Whether `source` is a link to `target`: put in its place, it would lead to itself.
bool isLinkTo(const String& source, const String& target)
{
    if (!platform::isLink(source) || platform::isLink(target)) return false;
    const auto identity = platform::readIdentity(source);
    return identity && identity == platform::readIdentity(target);
}

/// Makes place for a file. An existing file stays until it is replaced, so that it is not lost when that fails.
bool clearPlace(const String& source, const String& target, DWORD attributes)
{
    if (isLinkTo(source, target)) return platform::failStep(platform::ALREADY_EXISTS, "renameFile", source, target);
    return (attributes & platform::FOLDER) == 0 || platform::removeFolder(target);
}

}  // namespace

int OxaWindowsFileSystemFile::copy(const File& target, bool overwrite, std::shared_ptr<IProgress> progress,
                                   SharedItem& item) const
{
    if (const auto* const impl = detail::windowsImpl(target))
    {
        item = detail::makeFile(*impl);
        return copyOnDisk(*this, *impl, overwrite, progress.get());
    }
    const auto self = detail::makeFile(*this);
    if (!detail::HandOver::isUnderWay())
    {
        const detail::HandOver handOver;
        SharedItem copied;
        const int code = target.getImpl()->copyFrom(*self, overwrite, std::move(progress), copied);
        if (code == detail::SUCCESS && copied != nullptr)
        {
            item = std::move(copied);
            return code;
        }
    }
    return copyContent(*self, target, item);
}

int OxaWindowsFileSystemFile::copyFrom(const File& source, bool overwrite, std::shared_ptr<IProgress> progress,
                                       SharedItem& item) const
{
    const auto self = detail::makeFile(*this);
    if (const auto* const impl = detail::windowsImpl(source))
    {
        item = self;
        return copyOnDisk(*impl, *this, overwrite, progress.get());
    }
    if (!detail::HandOver::isUnderWay())
    {
        const detail::HandOver handOver;
        SharedItem copied;
        const int code = source.getImpl()->copy(*self, overwrite, std::move(progress), copied);
        if (code == detail::SUCCESS && copied != nullptr)
        {
            item = std::move(copied);
            return code;
        }
    }
    return copyContent(source, *self, item);
}

bool OxaWindowsFileSystemFile::move(const File& target, bool overwrite) const
{
    const String from = getFullNameUnicode();
    const String to = target.getFullNameUnicode();
    if (detail::windowsImpl(target) == nullptr)
    {
        platform::failStep(platform::NOT_SAME_DEVICE, "renameFile", from, to);
        return detail::reportFailedMove(from, to);
    }
    const auto attributes = platform::readAttributes(to);
    const bool isThere = attributes || platform::isLink(to);
    if (isThere && !overwrite) return platform::failStep(platform::ALREADY_EXISTS, "renameFile", from, to);
    if (isThere && !clearPlace(from, to, attributes.value_or(0))) return detail::reportFailedMove(from, to);
    if (platform::renameFile(from, to, !overwrite)) return true;
    // What came a moment ago is as much in the way as what was there before.
    if (!overwrite && platform::lastError() == platform::ALREADY_EXISTS) return false;
    return detail::reportFailedMove(from, to);
}

}  // namespace Oxa_1_1
