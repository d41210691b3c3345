#pragma once

/// @file
/// Links: what they are, where they lead, how they are made. For the library's own file system; items of another one
/// are no links and take none.

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"

namespace Oxa_1_1
{

/// Whether the path itself is a link or junction, of any kind; one to nothing, too.
OXA_API bool isLink(const FileSystemItem& item);

/// Where a link leads, as it was written into it: perhaps relative to the folder that the link lies in, perhaps to
/// nothing. NIL for what is no link.
OXA_API String linkTarget(const FileSystemItem& link);

/// What a new link is to lead to. Windows asks; for Linux all are the same.
enum class LinkKind
{
    File,
    Folder,
    /// To a folder by an absolute path, which on Windows must be on a drive and needs no privilege.
    Junction
};

/// Makes a link to `target`, which need not exist and is written into it as it stands, but for slashes and for the dots
/// in that of a junction. False when something of that name is there, the system refuses, or a junction is to have a
/// relative target.
OXA_API bool createLink(const FileSystemItem& link, const String& target, LinkKind kind);

/// Whether both are there and are one and the same on disk, by whatever spellings or links: unlike `==`, this tells
/// "t/Case" from "t/case" where the disk does.
OXA_API bool isSameOnDisk(const FileSystemItem& a, const FileSystemItem& b);

}  // namespace Oxa_1_1
