#pragma once

#include <memory>
#include <ostream>

#include "base/filesystem/file.h"

namespace Oxa_1_1
{

/// Writes a file anew without ever leaving half of one: into a new file beside it, which takes its place in one step by
/// commit(). Without that, or when anything fails, the file stays as it was. One thread at a time.
///
/// A link is followed to the file that it leads to. Permissions of the file that was there are kept; other names of it
/// (hard links) keep the old content.
class OXA_API SafeWriter
{
   public:
    /// What the new file outlives from commit() on.
    enum class Durability
    {
        /// Whole after the end of the program, whenever that comes.
        Program,
        /// Whole after a loss of power, too: waits until the disk has it.
        Power
    };

    /// The folder of the target must be there and take new files.
    explicit SafeWriter(const File& target);
    /// `other` has ended afterwards; what this one had not committed is removed.
    /// @{
    SafeWriter(SafeWriter&& other) noexcept;
    SafeWriter& operator=(SafeWriter&& other) noexcept;
    /// @}
    /// Removes what was not committed.
    ~SafeWriter();

    /// Takes bytes; in its failed state when no new file can be made, and after the end.
    std::ostream& stream() noexcept;

    /// Puts the new file in its place and ends the writing. False, with the target as it was, when something could not
    /// be written, when the target may not be written or is no file, or when another program held it for over a second.
    /// With Durability::Power it is also false when the disk failed in the very last step: then the new file is in its
    /// place, but may be the old one again after a loss of power.
    [[nodiscard]] bool commit(Durability durability = Durability::Program);
    /// Ends the writing without a change.
    void discard() noexcept;

   private:
    struct OXA_HIDDEN Draft;
    std::unique_ptr<Draft> m_draft;
};

}  // namespace Oxa_1_1
