#pragma once

#include <optional>

#include "base/filesystem/detail/failure_list.h"
#include "base/filesystem/tree_operations.h"
#include "base/platform/files/tree.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

/// What operations on trees have in common: their options, and what they tell.
class TreeWork
{
   public:
    explicit TreeWork(const TreeOptions& options) : m_options(options), m_failures(options.failureLimit) {}
    TreeWork(const TreeWork&) = delete;
    TreeWork& operator=(const TreeWork&) = delete;

    const TreeOptions& options() const noexcept { return m_options; }
    TreeReport& report() noexcept { return m_report; }
    bool rollsBack() const noexcept { return m_options.onFailure == OnFailure::RollBack; }

    /// Notes a failure. False when that ends the operation.
    bool fail(std::string_view operation, const String& path, DWORD code = platform::lastError(),
              const String& target = {});
    bool hasFailed() const noexcept { return m_failures.count() != 0; }
    /// By a failure.
    bool isEnded() const noexcept { return hasFailed() && m_options.onFailure != OnFailure::GoOn; }
    /// Asks the token, and notes that it has stopped the operation.
    bool isStopped();

    /// For the totals.
    /// @{
    enum class Counted
    {
        FILES,
        FILES_AND_BYTES
    };
    void count(const Directory& folder, LinkHandling links, Counted what = Counted::FILES_AND_BYTES);
    void countFile(std::uint64_t bytes);
    /// @}
    /// A file is done, whose progress was received.
    void fileDone();
    /// One is done without its content, or needs nothing to be done.
    /// @{
    void fileDone(std::uint64_t bytes);
    void fileSkipped(std::uint64_t bytes);
    void linkDone();
    /// @}
    /// All that was counted is: in one piece, perhaps.
    void wholeDone();
    void folderDone();
    /// What was copied of the file does not count.
    void fileFailed() noexcept { m_progress.bytes = m_bytesBefore; }
    /// Receives the progress of one file. While that is not whole, it throws Stopped, or what the receiver throws.
    platform::CopyProgress fileProgress();
    struct Stopped
    {
    };
    /// For what takes long, and is no progress. It throws Stopped.
    platform::CopyProgress comparisonProgress();

    /// The report, with all failures.
    TreeReport finish();

   private:
    void tell();
    void pass(std::uint64_t bytes);

    const TreeOptions& m_options;
    FailureList m_failures;
    TreeReport m_report;
    TreeProgress m_progress;
    /// Of the files before the one that is copied.
    std::uint64_t m_bytesBefore = 0;
};

}  // namespace Oxa_1_1::detail
