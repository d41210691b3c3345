#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "base/filesystem/directory.h"
#include "base/filesystem/disk_facts.h"
#include "base/filesystem/failure.h"
#include "base/filesystem/file.h"

namespace Oxa_1_1
{

class TreeWalk;

/// In which order a walk shows what is in a folder.
enum class WalkOrder
{
    /// As the system gives them: each folder is followed by what is in it.
    AsRead,
    /// In each folder the folders, with all that is in them, before the files. Takes memory for the names in a folder.
    FoldersFirst
};

/// What a walk shows: with the files also pipes, devices and the like.
enum class WalkedKinds
{
    All,
    Files,
    Folders
};

/// What a walk shows, and how.
struct WalkOptions
{
    /// What is shown, as search strings of Directory have it; NIL for everything. All folders are gone into.
    String pattern = {};
    /// What lies in the folder itself has depth 1.
    std::size_t maxDepth = (std::numeric_limits<std::size_t>::max)();
    /// What is shown, and in which order.
    /// @{
    WalkedKinds kinds = WalkedKinds::All;
    WalkOrder order = WalkOrder::AsRead;
    /// @}
    /// Goes into what links lead to, but not round in circles.
    bool followLinks = false;
    /// Of failures() that are kept; all of them are counted.
    std::size_t failureLimit = 100;
    /// Is told of each failure at once. What it throws comes out of begin() or ++; a further range-for goes on behind
    /// it.
    std::function<void(const Failure&)> onFailure = {};
};

/// What a walk has come to. Valid until its next step.
class OXA_API WalkEntry
{
   public:
    /// What an entry is.
    enum class Kind
    {
        /// Also a link to one, or to nothing.
        File,
        /// Also a link to one.
        Folder,
        /// A pipe, a device and the like.
        Other
    };

    WalkEntry(const WalkEntry&) = delete;
    WalkEntry& operator=(const WalkEntry&) = delete;

    /// Its own name, without a path.
    String name() const;
    /// 1 for what lies in the folder itself.
    std::size_t depth() const noexcept;
    /// What it is, and whether it is a link to that.
    /// @{
    Kind kind() const noexcept;
    bool isFile() const noexcept { return kind() == Kind::File; }
    bool isFolder() const noexcept { return kind() == Kind::Folder; }
    bool isLink() const noexcept;
    /// @}

    /// Asked of the open folder when they are wanted, of what a link leads to; empty when it is gone or leads nowhere.
    /// @{
    std::optional<std::uint64_t> size() const;
    std::optional<FileTime> lastWriteTime() const;
    std::optional<FileTime> creationTime() const;
    /// @}

    /// Its absolute path; empty when it is a folder, or when it is none.
    /// @{
    std::shared_ptr<const File> file() const;
    std::shared_ptr<const Directory> directory() const;
    /// @}
    /// Either of them.
    std::shared_ptr<const FileSystemItem> item() const;
    /// Its absolute path as text.
    String fullName() const;
    /// Seen from the folder of the walk.
    String relativeName() const;

   private:
    friend TreeWalk;
    struct Data;
    OXA_HIDDEN explicit WalkEntry(Data& data) noexcept : m_data(&data) {}
    Data* m_data;
};

/// Shows what lies below a folder, one after another, for a range-based for. Each folder is read once, from open folder
/// to open folder, and no list is made: memory does not grow with the tree. Folders that cannot be read are told in
/// failures(), and the walk goes on. One walk at a time and thread; begin() starts it.
///
/// For the library's own file system: of a folder of another one, nothing is shown, and failures() tell so.
class OXA_API TreeWalk
{
   public:
    /// Where a walk is; all iterators of a walk stand at the same entry.
    class Iterator
    {
       public:
        /// As the standard names them.
        /// @{
        using iterator_concept = std::input_iterator_tag;
        using iterator_category = std::input_iterator_tag;
        using value_type = WalkEntry;
        using difference_type = std::ptrdiff_t;
        using pointer = const WalkEntry*;
        using reference = const WalkEntry&;
        /// @}

        Iterator() noexcept = default;
        /// The entry, and the way to the next one.
        /// @{
        reference operator*() const noexcept { return *m_walk->m_entry; }
        pointer operator->() const noexcept { return m_walk->m_entry.get(); }
        Iterator& operator++()
        {
            if (!m_walk->advance()) m_walk = nullptr;
            return *this;
        }
        void operator++(int) { ++*this; }
        /// @}
        /// Whether there are no more.
        friend bool operator==(const Iterator& a, std::default_sentinel_t) noexcept { return a.m_walk == nullptr; }

       private:
        friend TreeWalk;
        explicit Iterator(TreeWalk* walk) noexcept : m_walk(walk) {}
        TreeWalk* m_walk = nullptr;
    };

    /// Of what lies in the folder and below; reads nothing yet.
    explicit TreeWalk(const Directory& folder, WalkOptions options = {});
    TreeWalk(const TreeWalk&) = delete;
    TreeWalk& operator=(const TreeWalk&) = delete;
    ~TreeWalk();

    /// Goes to the first entry; later, to the one where the walk is.
    Iterator begin();
    /// Behind the last entry.
    std::default_sentinel_t end() const noexcept { return {}; }

    /// What lies below the entry shown last is passed over.
    void skipBelow() noexcept;

    /// How many entries have been passed, whether they were shown or not. See countEntries().
    std::uint64_t passed() const noexcept;

    /// The first ones, and how many there were.
    /// @{
    const std::vector<Failure>& failures() const noexcept;
    std::uint64_t failureCount() const noexcept;
    /// @}
    /// Whether all was seen up to here.
    bool isWhole() const noexcept { return failureCount() == 0; }

   private:
    bool advance();

    std::unique_ptr<WalkEntry::Data> m_data;
    std::unique_ptr<WalkEntry> m_entry;
};

/// What TreeWalk::passed() comes to in a whole walk with these options, so that its share can be told meanwhile.
OXA_API std::uint64_t countEntries(const Directory& folder, const WalkOptions& options = {});

}  // namespace Oxa_1_1
