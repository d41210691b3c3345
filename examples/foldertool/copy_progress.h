#pragma once

#include <chrono>
#include <string>

#include "base/filesystem/progress.h"

namespace foldertool
{

/// Follows the copies of several files. Draws a bar while standard error is a terminal, and ends the copy under way by
/// an exception when the program was asked to stop.
class CopyProgress : public Oxa_1_1::IProgress
{
   public:
    explicit CopyProgress(unsigned long long totalBytes);
    CopyProgress(const CopyProgress&) = delete;
    CopyProgress& operator=(const CopyProgress&) = delete;
    ~CopyProgress() override;

    /// Around each copy.
    void begin(unsigned long long fileBytes);
    void end(bool isCopied);

    /// Takes the bar away, before other lines are written.
    void clear();

    unsigned long long copiedFiles() const { return m_files; }
    unsigned long long copiedBytes() const { return m_bytes; }
    std::chrono::duration<double> elapsed() const { return Clock::now() - m_start; }

    void onProgress(double percent) override;
    void onItem(const std::string& name) override;

   private:
    using Clock = std::chrono::steady_clock;

    void draw(unsigned long long bytes);

    unsigned long long m_totalBytes;
    unsigned long long m_fileBytes = 0;
    unsigned long long m_files = 0;
    unsigned long long m_bytes = 0;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_drawn = m_start;
    int m_width;
    bool m_isVisible = false;
};

}  // namespace foldertool
