#include "base/platform/files/files.h"

#include <utility>

#include "base/platform/files/detail/native_files.h"
#include "base/platform/files/detail/observed.h"

// Every operation passes by the observer here, and goes to the system.
namespace Oxa_1_1::platform
{

namespace
{

class ObservedFolderReader : public FolderReader
{
   public:
    ObservedFolderReader(std::unique_ptr<FolderReader> reader, TextView path)
        : m_reader(std::move(reader)), m_path(path)
    {
    }

    bool nextOf(FolderEntry& entry, EntryKinds kinds) override
    {
        do
        {
            if (!asked("nextEntry", m_path, [&] { return m_reader->next(entry); })) return false;
        } while (!isOf(entry.kind, kinds));
        return true;
    }

   private:
    std::unique_ptr<FolderReader> m_reader;
    Text m_path;
};

}  // namespace

std::optional<FileInformation> readInformation(TextView path)
{
    return observed("readInformation", path, [&] { return native::readInformation(path); });
}

std::optional<DWORD> readAttributes(TextView path)
{
    return observed("readAttributes", path, [&] { return native::readAttributes(path); });
}

bool writeAttributes(TextView path, DWORD attributes)
{
    return observed("writeAttributes", path, [&] { return native::writeAttributes(path, attributes); });
}

bool isLink(TextView path)
{
    return asked("isLink", path, [&] { return native::isLink(path); });
}

std::optional<FileIdentity> readIdentity(TextView path)
{
    return observed("readIdentity", path, [&] { return native::readIdentity(path); });
}

bool statFile(TextView path, struct _stat64i32& result)
{
    return observed("statFile", path, [&] { return native::statFile(path, result); });
}

bool isReadable(TextView path)
{
    return observed("isReadable", path, [&] { return native::isReadable(path); });
}

bool canOpen(TextView path, bool read, bool write, DWORD attributes)
{
    return observed("canOpen", path, [&] { return native::canOpen(path, read, write, attributes); });
}

Touch touchFile(TextView path)
{
    return observed("touchFile", path, [&] { return native::touchFile(path); });
}

void flushFile(TextView path)
{
    asked("flushFile", path, [&] { native::flushFile(path); });
}

bool touchFolder(TextView path)
{
    return observed("touchFolder", path, [&] { return native::touchFolder(path); });
}

bool deleteFile(TextView path)
{
    return observed("deleteFile", path, [&] { return native::deleteFile(path); });
}

bool renameFile(TextView from, TextView to, bool failIfExists)
{
    return observed("renameFile", from, to, [&] { return native::renameFile(from, to, failIfExists); });
}

bool copyFile(TextView from, TextView to, bool failIfExists, const CopyProgress& progress)
{
    return observed("copyFile", from, to, [&] { return native::copyFile(from, to, failIfExists, progress); });
}

bool copyLink(TextView from, TextView to, bool failIfExists)
{
    return observed("copyLink", from, to, [&] { return native::copyLink(from, to, failIfExists); });
}

bool createFolder(TextView path)
{
    return observed("createFolder", path, [&] { return native::createFolder(path); });
}

bool removeFolder(TextView path)
{
    return observed("removeFolder", path, [&] { return native::removeFolder(path); });
}

bool isEmptyFolder(TextView path)
{
    setLastError(0);
    const bool isEmpty = asked("isEmptyFolder", path, [&] { return native::isEmptyFolder(path); });
    // That of a folder with something in it is no failure.
    if (!isEmpty && lastError() != 0) noteFailedStep("isEmptyFolder", path);
    return isEmpty;
}

std::unique_ptr<FolderReader> openFolder(TextView path)
{
    std::unique_ptr<FolderReader> reader = observed("openFolder", path, [&] { return native::openFolder(path); });
    if (reader == nullptr || fileObserver() == nullptr) return reader;
    return std::make_unique<ObservedFolderReader>(std::move(reader), path);
}

Text currentFolder(int drive)
{
    return observed("currentFolder", {}, [&] { return native::currentFolder(drive); });
}

}  // namespace Oxa_1_1::platform
