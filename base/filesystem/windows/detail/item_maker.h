#pragma once

#include <memory>

#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/platform/files/files.h"

/// Items of what is in a folder.
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

/// Makes items of these kinds of the entries of one folder.
class ItemMaker
{
   public:
    ItemMaker(const Directory& directory, Kinds kinds);
    /// Of a folder whose entries are the library's own items.
    ItemMaker(SharedDirectory path, Kinds kinds);

    /// Null when each item has to be asked for.
    static SharedDirectory pathOfOwnItems(const Directory& directory);

    String pathToRead() const;
    /// What has to be read for items of these kinds. Only the library's own items are what their entries are.
    platform::EntryKinds kindsToRead() const noexcept;
    void make(const platform::FolderEntry& entry, ItemReceiver& receiver) const;
    /// Of a folder whose name is one.
    SharedDirectory pathOf(TextView name) const;

   private:
    void askFor(const String& path, ItemReceiver& receiver) const;

    /// Of the folder; NIL while its parsed form says it.
    String m_fullName;
    SharedDirectory m_path;
    OxaWindowsFileSystemDirectory m_impl;
    Kinds m_kinds;
};

}  // namespace Oxa_1_1::detail
