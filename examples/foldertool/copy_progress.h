#pragma once

#include <chrono>
#include <string>

#include "base/filesystem/progress.h"
#include "base/filesystem/tree_operations.h"

namespace foldertool
{

/// Draws a bar while standard error is a terminal.
class ProgressBar
{
   public:
    ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar();

    void show(const Oxa_1_1::TreeProgress& progress);
    /// Takes the bar away, before other lines are written.
    void clear();

    std::chrono::duration<double> elapsed() const { return Clock::now() - m_start; }

   private:
    using Clock = std::chrono::steady_clock;

    std::string line(const Oxa_1_1::TreeProgress& progress) const;

    Clock::time_point m_start = Clock::now();
    Clock::time_point m_drawn = m_start;
    int m_width;
    bool m_isVisible = false;
};

/// Follows the copy of one file, and ends it by an exception when the program was asked to stop.
class CopyProgress : public Oxa_1_1::IProgress
{
   public:
    CopyProgress(ProgressBar& bar, unsigned long long bytes) : m_bar(bar), m_bytes(bytes) {}

    void onProgress(double percent) override;
    void onItem(const std::string& name) override;

   private:
    ProgressBar& m_bar;
    unsigned long long m_bytes;
};

/// "5,070 files copied, 48.1 MB at 210 MB/s"
std::string copySummary(unsigned long long files, unsigned long long bytes, std::chrono::duration<double> time);

}  // namespace foldertool
