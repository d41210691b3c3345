#include "examples/foldertool/copy_progress.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

constexpr std::size_t MOST_BAR_COLUMNS = 26;
constexpr std::size_t LEAST_BAR_COLUMNS = 8;
constexpr int LINE_COLUMNS = 78;
constexpr std::chrono::milliseconds REDRAW_TIME(100);

std::string bar(double share, std::size_t columns)
{
    const std::size_t inside = columns - 2;
    const auto full = static_cast<std::size_t>(std::lround(share * static_cast<double>(inside)));
    return '[' + std::string(full, '#') + std::string(inside - full, '.') + ']';
}

}  // namespace

ProgressBar::ProgressBar() : m_width(std::min(system::terminalWidth() - 1, LINE_COLUMNS)) {}

ProgressBar::~ProgressBar() { clear(); }

void ProgressBar::clear()
{
    if (m_isVisible) std::cerr << '\r' + std::string(static_cast<std::size_t>(m_width), ' ') + '\r' << std::flush;
    m_isVisible = false;
}

void ProgressBar::show(const TreeProgress& progress)
{
    if (m_width <= 0 || Clock::now() - m_drawn < REDRAW_TIME) return;
    m_drawn = Clock::now();
    std::cerr << '\r' + left(line(progress), static_cast<std::size_t>(m_width)) << std::flush;
    m_isVisible = true;
}

std::string ProgressBar::line(const TreeProgress& progress) const
{
    const unsigned long long total = progress.totalBytes;
    const double share =
        total > 0 ? std::min(static_cast<double>(progress.bytes) / static_cast<double>(total), 1.0) : 1;
    const std::string percent = right(std::to_string(static_cast<int>(share * 100)), 3);
    const auto width = static_cast<std::size_t>(m_width);
    // Whatever does not fit is left out, and no number is cut.
    const auto withBar = [&](unsigned int id)
    {
        const auto lineWith = [&](const std::string& drawn) {
            return text(
                id, {drawn, percent, byteText(progress.bytes), byteText(total), rateText(progress.bytes, elapsed())});
        };
        const std::size_t used = columnsOf(lineWith({}));
        if (used + LEAST_BAR_COLUMNS > width) return std::string();
        return lineWith(bar(share, std::min(MOST_BAR_COLUMNS, width - used)));
    };
    for (const unsigned id :
         {unsigned{IDS_PROGRESS}, unsigned{IDS_PROGRESS_OF_BYTES}, unsigned{IDS_PROGRESS_IN_PERCENT}})
        if (std::string drawn = withBar(id); !drawn.empty()) return drawn;
    return percent.size() <= width ? percent : std::string();
}

void CopyProgress::onProgress(double percent)
{
    throwIfStopped();
    // Of an empty file it is not a number.
    const double done = m_bytes > 0 ? percent / 100 * static_cast<double>(m_bytes) : 0;
    m_bar.show({.bytes = static_cast<std::uint64_t>(done), .totalBytes = m_bytes});
}

void CopyProgress::onItem(const std::string& /*name*/) { throwIfStopped(); }

std::string copySummary(unsigned long long files, unsigned long long bytes, std::chrono::duration<double> time)
{
    return text(IDS_COPIED, {counted(IDS_ONE_FILE, files), byteText(bytes), rateText(bytes, time)});
}

}  // namespace foldertool
