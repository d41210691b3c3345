#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/filesystem/detail/tree_walk.h"
#include "base/filesystem/detail/tree_work.h"

namespace Oxa_1_1::detail
{

/// What a copy or move has made, so that it can be taken back: nothing else, and nothing that others have put in its
/// place meanwhile.
class TreeJournal
{
   public:
    enum class Kind
    {
        MADE_FOLDER,
        COPIED,
        MOVED
    };
    struct Record
    {
        Kind kind;
        /// The folder on the target's side that it lies in.
        std::size_t folder;
        Text name;
        /// Its name on the source's side.
        Text sourceName;
        /// Where what it replaced is kept, in the same folder; empty for nothing.
        Text aside;
        std::optional<platform::FileIdentity> identity;
    };
    /// That the way of the target starts from.
    static constexpr std::size_t TOP = 0;

    TreeJournal() { m_folders.emplace_back(); }

    /// A folder on the target's side, which was there or is made; `isOfSource` when the source has one of this name. It
    /// is the current folder of the way.
    std::size_t addFolder(std::size_t above, TextView name, bool isMade, bool isOfSource,
                          const platform::OpenFolder& folder);
    void add(Record record) { m_records.push_back(std::move(record)); }
    bool isEmpty() const noexcept { return m_records.empty(); }

    /// Takes all back, the last first; the ways are at their tops. What cannot be is told.
    bool undo(FolderWay& target, FolderWay* source, TreeWork& work);
    /// Removes what is kept aside. False, after a failure, as long as all can still be taken back.
    bool commit(FolderWay& target, TreeWork& work);

   private:
    struct Folder
    {
        std::size_t above = TOP;
        Text name;
        bool isMade = false;
        bool isOfSource = false;
        std::optional<platform::FileIdentity> identity;
    };
    class Visit;

    std::vector<Folder> m_folders;
    std::vector<Record> m_records;
};

}  // namespace Oxa_1_1::detail
