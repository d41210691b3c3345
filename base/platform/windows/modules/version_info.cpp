#include "base/platform/modules/version_info.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

namespace
{

/// Values below this key are texts, whose length is counted in units with the terminating zero.
constexpr TextView TEXTS = L"\\StringFileInfo\\";

}  // namespace

std::vector<std::byte> readVersionInfo(TextView path)
{
    const Text file(path);
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(file.c_str(), &ignored);
    std::vector<std::byte> info(size);
    if (size == 0 || GetFileVersionInfoW(file.c_str(), 0, size, info.data()) == 0) return {};
    return info;
}

std::optional<std::span<const std::byte>> queryVersionInfo(std::span<const std::byte> info, TextView query)
{
    if (info.empty()) return std::nullopt;
    void* value = nullptr;
    UINT length = 0;
    if (VerQueryValueW(info.data(), Text(query).c_str(), &value, &length) == 0) return std::nullopt;
    if (!query.starts_with(TEXTS)) return std::span(static_cast<const std::byte*>(value), length);
    const TextView text(static_cast<const wchar_t*>(value), length);
    return std::as_bytes(std::span(text.substr(0, text.find(L'\0'))));
}

}  // namespace Oxa_1_1::platform
