#pragma once

#include <memory>

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

/// Takes the items of a folder as they are found.
class ItemReceiver
{
   public:
    ItemReceiver() = default;
    ItemReceiver(const ItemReceiver&) = delete;
    ItemReceiver& operator=(const ItemReceiver&) = delete;
    virtual ~ItemReceiver() = default;
    virtual void take(std::shared_ptr<const File> file) = 0;
    virtual void take(std::shared_ptr<const Directory> directory) = 0;
};

/// Finds what the folder holds and the search string matches, in the system's order. Items of other kinds than asked
/// for may be among them. What was read until a failure counts.
void listFolder(const Directory& directory, const String& pattern, Kinds kinds, ItemReceiver& receiver);

/// Whether it is a link (or junction) itself, as far as the list said that it was found in; else the system is asked.
bool isLinkItself(const Directory& directory);

/// Whether it is a link to a folder that it lies in, so that a walk through it would never end. Asks the system only
/// for links.
bool leadsToAncestor(const OxaWindowsFileSystemDirectory& directory);
bool leadsToAncestor(const Directory& directory);

}  // namespace Oxa_1_1::detail
