#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/filesystem/detail/tree_clearing.h"
#include "base/filesystem/detail/tree_journal.h"
#include "base/filesystem/detail/tree_work.h"

namespace Oxa_1_1::detail
{

/// Where entries are on both sides.
struct TransferPlace
{
    FolderWay& source;
    FolderWay& target;
    /// Both are on one disk.
    bool canRename = false;
    /// The folder of the target.
    std::size_t inJournal = TreeJournal::TOP;
};

/// Brings a file or link to the other side, and lets it take the place of what is there.
class EntryTransfer
{
   public:
    enum class Mode
    {
        COPY,
        MOVE
    };
    struct Names
    {
        Text source;
        Text target;
    };

    EntryTransfer(TreeWork& work, TreeJournal& journal, Mode mode) : m_work(work), m_journal(journal), m_mode(mode) {}
    EntryTransfer(const EntryTransfer&) = delete;
    EntryTransfer& operator=(const EntryTransfer&) = delete;

    bool isMove() const noexcept { return m_mode == Mode::MOVE; }
    /// A move always does.
    /// @{
    bool keepsPermissions() const noexcept { return isMove() || m_work.options().keepPermissions; }
    bool keepsTimes() const noexcept { return isMove() || m_work.options().keepTimes; }
    /// @}
    /// For failures.
    std::string_view operation() const noexcept { return isMove() ? "renameFile" : "copyFile"; }
    /// Whether links of this kind come as links; else what they lead to does.
    bool keepsLink(platform::EntryKind kind) const noexcept;

    /// False after a failure that ends the operation.
    bool transfer(const TransferPlace& place, const Names& names, platform::EntryKind kind);
    /// One that needs no more than a new name, of whatever kind it is.
    void noteMoved(const TransferPlace& place, const Names& names, platform::EntryKind kind)
    {
        note(Brought::MOVED, place, names, kind, {});
    }
    /// Of a file whose content stayed where it is.
    std::uint64_t sizeForProgress(const TransferPlace& place, TextView targetName) const;

    /// Notes that the entry has failed, with the last error or another one, and stays at the source. False when that
    /// ends the operation. `target` is what the entry was to become.
    /// @{
    bool fail(std::string_view operation, FolderWay& source, TextView name, const String& target = {});
    bool fail(DWORD code, std::string_view operation, FolderWay& source, TextView name, const String& target = {});
    /// @}

    const LeftEntries& left() const noexcept { return m_left; }
    bool hasCopied() const noexcept { return m_hasCopied; }

   private:
    enum class Brought
    {
        FAILED,
        COPIED,
        MOVED
    };

    bool fail(DWORD code, const TransferPlace& place, const Names& names);
    bool replace(const TransferPlace& place, const Names& names, platform::EntryKind kind);
    /// What stands as `name` in `from` takes the place of what is there. False, with the last error, when nothing has
    /// changed.
    bool takePlace(const platform::OpenFolder& from, const Text& name, Brought brought, const TransferPlace& place,
                   const Names& names, platform::EntryKind kind);
    /// Whether what stands at the target gives way; else that was told, and `goesOn` is false when it ends all.
    bool givesWay(const TransferPlace& place, const Names& names, platform::EntryKind kind, bool& goesOn);
    bool isNoNewer(const TransferPlace& place, const Names& names, platform::EntryKind kind, bool isLink) const;
    Brought bring(const TransferPlace& place, const Names& names, platform::EntryKind kind);
    void takeBack(Brought brought, const TransferPlace& place, const Text& temporary, const Text& name);
    static Text keepAside(const platform::OpenFolder& target, const Text& name, bool& isKept);
    void note(Brought brought, const TransferPlace& place, const Names& names, platform::EntryKind kind, Text aside);

    TreeWork& m_work;
    TreeJournal& m_journal;
    Mode m_mode;
    LeftEntries m_left;
    bool m_hasCopied = false;
};

}  // namespace Oxa_1_1::detail
