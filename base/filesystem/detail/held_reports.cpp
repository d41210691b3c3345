#include "base/filesystem/detail/held_reports.h"

#include "base/filesystem/file_system_item.h"

namespace Oxa_1_1::detail
{

HeldReports*& HeldReports::innermost() noexcept
{
    static thread_local constinit HeldReports* reports = nullptr;
    return reports;
}

void HeldReports::passOn(std::size_t from)
{
    const std::vector<String> messages = std::exchange(m_messages, {});
    for (std::size_t i = from; i < messages.size(); ++i) FileSystemItem::reportError(messages[i]);
}

bool HeldReports::hold(const String& message)
{
    HeldReports* const holder = innermost();
    if (holder == nullptr) return false;
    holder->m_messages.push_back(message);
    return true;
}

}  // namespace Oxa_1_1::detail
