#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <tuple>
#include <vector>

#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/entry_stream.h"
#include "base/filesystem/detail/tree_copy.h"
#include "base/filesystem/detail/tree_journal.h"
#include "base/filesystem/detail/tree_work.h"

namespace Oxa_1_1::detail
{

/// Brings what lies on one side to the other one, as copyTree(), moveTree() and moveFile() do.
class TreeTransfer
{
   public:
    enum class Mode
    {
        COPY,
        MOVE
    };

    TreeTransfer(TreeWork& work, Mode mode) : m_work(work), m_mode(mode) {}
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
    enum class Brought
    {
        FAILED,
        COPIED,
        MOVED
    };
    struct Names
    {
        Text source;
        Text target;
    };
    using LeftEntry = std::tuple<std::uint64_t, std::uint64_t, Text>;

    bool isMove() const noexcept { return m_mode == Mode::MOVE; }
    bool keepsLink(platform::EntryKind kind) const noexcept;
    String sourceName(TextView name) { return m_source->way().fullName(name); }
    String targetName(TextView name) { return m_target->fullName(name); }
    bool fail(std::string_view operation, const String& path) { return m_work.fail(operation, path); }
    bool failEntry(std::string_view operation, TextView name);
    bool failWith(DWORD code, std::string_view operation, TextView name);
    /// Notes that the entry stays in the source's current folder.
    void leave(TextView name);
    bool isLeft(const platform::OpenFolder& folder, TextView name) const;

    /// False after a failure that makes any more of it pointless.
    bool openTarget(const DiskFolder& target);
    bool makeTarget();
    bool openSource(const DiskFolder& source, platform::Links links);
    bool isOutsideSource();
    /// Runs `act`, and takes all back when that is asked for and needed.
    template <class Act>
    void guarded(const Act& act);
    void rollBack();

    bool walk();
    void begin(bool isMade, std::size_t inJournal);
    bool end();
    bool transfer(const platform::TreeEntry& entry);
    bool transferFolder(const Text& name, platform::Links links);
    bool leadsToTarget() const;
    bool transferEntry(const Names& names, platform::EntryKind kind);
    bool replaceEntry(const Names& names, platform::EntryKind kind);
    /// Whether what stands at the target gives way; else that was told, and `goesOn` is false when it ends all.
    bool givesWay(const Names& names, platform::EntryKind kind, bool& goesOn);
    Brought bring(const Names& names, platform::EntryKind kind);
    void takeBack(Brought brought, const Text& temporary, const Text& name);
    Text keepAside(const Text& name, bool& isKept);
    /// Of a file whose content stayed where it is.
    std::uint64_t sizeForProgress(TextView name);
    void note(Brought brought, const Names& names, platform::EntryKind kind, Text aside);

    /// The second half of a move: what was copied is removed when it is the same on both sides. False when not all is.
    bool clearSource(const DiskFolder& source);
    bool clearEntry(FolderWay& way, TextView name);

    TreeWork& m_work;
    Mode m_mode;
    std::optional<EntryStream> m_source;
    std::optional<FolderWay> m_target;
    std::optional<Circles> m_circles;
    std::optional<platform::FileIdentity> m_sourceTop;
    std::vector<platform::FileIdentity> m_targetAncestry;
    /// Of what is missing of the target's path, once it is open.
    std::vector<Text> m_missing;
    std::vector<Level> m_levels;
    TreeJournal m_journal;
    std::size_t m_topInJournal = TreeJournal::TOP;
    /// What stays at the source for a reason that was told.
    std::set<LeftEntry> m_left;
    std::uint64_t m_removed = 0;
    bool m_hasCopied = false;
};

}  // namespace Oxa_1_1::detail
