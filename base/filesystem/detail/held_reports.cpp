#include "base/filesystem/detail/held_reports.h"

#include <utility>

#include "base/filesystem/file_system_item.h"

namespace Oxa_1_1::detail
{

namespace
{

thread_local constinit HeldReports* innermost = nullptr;

}  // namespace

HeldReports::HeldReports() noexcept : m_outer(std::exchange(innermost, this)) {}

HeldReports::~HeldReports() { forget(); }

void HeldReports::release(std::size_t from)
{
    forget();
    const std::vector<String> messages = std::exchange(m_messages, {});
    for (std::size_t i = from; i < messages.size(); ++i) FileSystemItem::reportError(messages[i]);
}

void HeldReports::forget() noexcept
{
    if (std::exchange(m_holds, false)) innermost = m_outer;
}

bool HeldReports::hold(const String& message)
{
    if (innermost == nullptr) return false;
    innermost->m_messages.push_back(message);
    return true;
}

}  // namespace Oxa_1_1::detail
