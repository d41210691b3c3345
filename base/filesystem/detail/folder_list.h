#pragma once

#include <memory>
#include <vector>

#include "base/filesystem/directory.h"

namespace Oxa_1_1
{
class OxaWindowsFileSystemDirectory;
}

/// Reading a folder.
namespace Oxa_1_1::detail
{

enum class Kinds
{
    ALL,
    FILES,
    DIRECTORIES
};

/// What the folder holds and the search string matches, in the system's order. Items of other kinds than asked for may
/// be among them. What was read until a failure counts.
std::vector<std::shared_ptr<const FileSystemItem>> listFolder(const Directory& directory, const String& pattern,
                                                              Kinds kinds);

/// Whether it is a link (or junction) itself, as far as the list said that it was found in; else the system is asked.
bool isLinkItself(const Directory& directory);

/// Whether it is a link to a folder that it lies in, so that a walk through it would never end. Asks the system only
/// for links.
bool leadsToAncestor(const OxaWindowsFileSystemDirectory& directory);
bool leadsToAncestor(const Directory& directory);

}  // namespace Oxa_1_1::detail
