#pragma once

#include "base/platform/files/files.h"

/// The operations of files.h as each system makes them.
namespace Oxa_1_1::platform::native
{

std::optional<FileInformation> readInformation(TextView path);
std::optional<DWORD> readAttributes(TextView path);
bool writeAttributes(TextView path, DWORD attributes);
bool isLink(TextView path);
std::optional<FileIdentity> readIdentity(TextView path);
bool statFile(TextView path, struct _stat64i32& result);
bool isReadable(TextView path);
bool canOpen(TextView path, bool read, bool write, DWORD attributes);
Touch touchFile(TextView path);
void flushFile(TextView path);
bool touchFolder(TextView path);
bool deleteFile(TextView path);
bool renameFile(TextView from, TextView to, bool failIfExists);
bool copyFile(TextView from, TextView to, bool failIfExists, const CopyProgress& progress);
bool copyLink(TextView from, TextView to, bool failIfExists);
bool createFolder(TextView path);
bool removeFolder(TextView path);
bool isEmptyFolder(TextView path);
std::unique_ptr<FolderReader> openFolder(TextView path);
Text currentFolder(int drive);

}  // namespace Oxa_1_1::platform::native
