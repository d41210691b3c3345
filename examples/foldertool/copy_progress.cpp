#include "examples/foldertool/copy_progress.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

namespace
{

constexpr int BAR_COLUMNS = 24;
constexpr int LINE_COLUMNS = 78;
constexpr std::chrono::milliseconds REDRAW_TIME(100);

std::string bar(double share)
{
    const auto full = static_cast<std::size_t>(std::lround(share * BAR_COLUMNS));
    return '[' + std::string(full, '#') + std::string(BAR_COLUMNS - full, '.') + ']';
}

}  // namespace

CopyProgress::CopyProgress(unsigned long long totalBytes)
    : m_totalBytes(totalBytes), m_width(std::min(system::terminalWidth() - 1, LINE_COLUMNS))
{
}

CopyProgress::~CopyProgress() { clear(); }

void CopyProgress::begin(unsigned long long fileBytes) { m_fileBytes = fileBytes; }

void CopyProgress::end(bool isCopied)
{
    if (!isCopied) return;
    ++m_files;
    m_bytes += m_fileBytes;
}

void CopyProgress::clear()
{
    if (m_isVisible) std::cerr << '\r' + std::string(static_cast<std::size_t>(m_width), ' ') + '\r' << std::flush;
    m_isVisible = false;
}

void CopyProgress::onProgress(double percent)
{
    throwIfStopped();
    // Of an empty file it is not a number.
    const double share = m_fileBytes > 0 ? percent / 100 : 0;
    draw(m_bytes + static_cast<unsigned long long>(share * static_cast<double>(m_fileBytes)));
}

void CopyProgress::onItem(const std::string&) { throwIfStopped(); }

void CopyProgress::draw(unsigned long long bytes)
{
    if (m_width <= 0 || Clock::now() - m_drawn < REDRAW_TIME) return;
    m_drawn = Clock::now();
    const double share =
        m_totalBytes > 0 ? std::min(static_cast<double>(bytes) / static_cast<double>(m_totalBytes), 1.0) : 1;
    const std::string percent = right(std::to_string(static_cast<int>(share * 100)), 3);
    const std::string line =
        text(IDS_PROGRESS, {bar(share), percent, byteText(bytes), byteText(m_totalBytes), rateText(bytes, elapsed())});
    std::cerr << '\r' + left(line, static_cast<std::size_t>(m_width)).substr(0, static_cast<std::size_t>(m_width))
              << std::flush;
    m_isVisible = true;
}

}  // namespace foldertool
