#include "base/platform/linux/files/folder_entries.h"

#include <string_view>
#include <utility>

#include "base/platform/linux/files/reachable_path.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr std::size_t BUFFER_SIZE = 32768;

}  // namespace

FolderEntries::FolderEntries(FileDescriptor folder)
    : m_folder(std::move(folder)), m_buffer(std::make_unique_for_overwrite<std::byte[]>(BUFFER_SIZE))
{
}

const struct dirent64* FolderEntries::next()
{
    for (;;)
    {
        if (m_position == m_end && !fill()) return nullptr;
        const auto* const found = reinterpret_cast<const struct dirent64*>(m_buffer.get() + m_position);
        m_position += found->d_reclen;
        const std::string_view name = found->d_name;
        if (name != "." && name != "..") return found;
    }
}

bool FolderEntries::fill()
{
    const ssize_t size = uninterrupted([&] { return getdents64(m_folder.get(), m_buffer.get(), BUFFER_SIZE); });
    if (size < 0) return failWith(errno);
    if (size == 0)
    {
        setLastError(NO_MORE_FILES);
        return false;
    }
    m_position = 0;
    m_end = static_cast<std::size_t>(size);
    return true;
}

}  // namespace Oxa_1_1::platform
