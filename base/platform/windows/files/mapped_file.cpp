#include "base/platform/windows/files/mapped_file.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

MappedFile::MappedFile(const std::string& file)
{
    if (file.empty()) return;
    const HANDLE handle = CreateFileA(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return;
    LARGE_INTEGER size{};
    const HANDLE mapping =
        GetFileSizeEx(handle, &size) != 0 ? CreateFileMappingA(handle, nullptr, PAGE_READONLY, 0, 0, nullptr) : nullptr;
    CloseHandle(handle);
    if (mapping == nullptr) return;
    // The view keeps the mapping.
    const void* const view = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
    CloseHandle(mapping);
    if (view != nullptr) m_bytes = {static_cast<const std::uint8_t*>(view), static_cast<std::size_t>(size.QuadPart)};
}

MappedFile::~MappedFile()
{
    if (!m_bytes.empty()) UnmapViewOfFile(m_bytes.data());
}

}  // namespace Oxa_1_1::platform
