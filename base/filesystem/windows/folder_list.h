#pragma once

#include <memory>

#include "base/filesystem/directory.h"

/// Reading a folder, and making the library's own items of what is in it.
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
    /// `mayBeLink` is false for what the list knows to be none.
    virtual void take(std::shared_ptr<const Directory> directory, bool mayBeLink) = 0;
};

/// Finds what the folder holds and the search string matches, in the system's order. Items of other kinds than asked
/// for may be among them. What was read until a failure counts, but the list is a partial one.
void listFolder(const Directory& directory, const String& pattern, Kinds kinds, ItemReceiver& receiver);

}  // namespace Oxa_1_1::detail
