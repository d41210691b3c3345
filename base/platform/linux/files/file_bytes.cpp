#include "base/platform/linux/files/file_bytes.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace Oxa_1_1::platform
{

std::optional<std::vector<std::byte>> readFileBytes(const std::string& nativePath, std::size_t maxSize)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(nativePath, error)) return std::nullopt;
    const auto size = std::filesystem::file_size(nativePath, error);
    if (error || size > maxSize) return std::nullopt;
    std::ifstream file(nativePath, std::ios::binary);
    std::vector<std::byte> bytes(size);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    if (!file) return std::nullopt;
    return bytes;
}

}  // namespace Oxa_1_1::platform
