#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/entry_stream.h"
#include "base/filesystem/detail/entry_transfer.h"
#include "base/filesystem/detail/tree_clearing.h"
#include "base/filesystem/detail/tree_copy.h"
#include "base/filesystem/detail/tree_journal.h"
#include "base/filesystem/detail/tree_work.h"

namespace Oxa_1_1::detail
{

/// Brings what lies on one side to the other one, as copyTree(), moveTree() and moveFile() do.
class TreeTransfer
{
   public:
    using Mode = EntryTransfer::Mode;

    TreeTransfer(TreeWork& work, Mode mode) : m_work(work), m_entries(work, m_journal, mode), m_clearing(work) {}
    TreeTransfer(const TreeTransfer&) = delete;
    TreeTransfer& operator=(const TreeTransfer&) = delete;

    void copyFolder(const DiskFolder& source, const DiskFolder& target);
    void moveFolder(const DiskFolder& source, const DiskFolder& target);
    /// Of an entry of any kind but a folder; both folders are those that it lies in.
    void moveEntry(const DiskFolder& source, TextView name, const DiskFolder& target, TextView targetName);

   private:
    struct Level
    {
        bool isMade = false;
        /// Both sides are on one disk.
        bool canRename = false;
        std::size_t inJournal = TreeJournal::TOP;
    };

    bool fail(std::string_view operation, const String& path) { return m_work.fail(operation, path); }
    TransferPlace place()
    {
        const Level& level = m_levels.back();
        return {m_source->way(), *m_target, level.canRename, level.inJournal};
    }

    /// False after a failure that makes any more of it pointless.
    bool openTarget(const DiskFolder& target);
    bool makeTarget();
    bool openSource(const DiskFolder& source, platform::Links links);
    bool isOutsideSource(const ParsedDirectory& target);
    /// Runs `act`, and takes all back when that is asked for and needed.
    template <class Act>
    void guarded(const Act& act);
    void rollBack();

    bool walk();
    bool failReading(DWORD reason);
    void begin(bool isMade, std::size_t inJournal);
    bool end();
    bool transfer(const platform::FolderEntry& entry);
    bool transferFolder(const Text& name, platform::Links links);
    bool leadsToTarget() const;
    bool isTarget(const platform::OpenFolder& folder) const;
    bool isSource(const platform::OpenFolder& folder);
    /// The second half of a move. False when not all is gone.
    bool clearSource(const DiskFolder& source);

    TreeWork& m_work;
    std::optional<EntryStream> m_source;
    std::optional<FolderWay> m_target;
    std::optional<Circles> m_circles;
    std::optional<platform::FileIdentity> m_sourceTop;
    std::vector<platform::FileIdentity> m_targetAncestry;
    /// Of what is missing of the target's path, once it is open.
    std::vector<Text> m_missing;
    bool m_isTopMade = false;
    std::vector<Level> m_levels;
    TreeJournal m_journal;
    EntryTransfer m_entries;
    TreeClearing m_clearing;
    std::size_t m_topInJournal = TreeJournal::TOP;
};

}  // namespace Oxa_1_1::detail
