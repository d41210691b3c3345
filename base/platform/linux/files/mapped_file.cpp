#include "base/platform/linux/files/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <utility>

namespace Oxa_1_1::platform
{

namespace
{

std::span<const std::uint8_t> mapFile(const std::string& name)
{
    const int file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return {};
    struct stat status = {};
    void* memory = MAP_FAILED;
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
        memory = ::mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ, MAP_PRIVATE, file, 0);
    ::close(file);
    if (memory == MAP_FAILED) return {};
    return {static_cast<const std::uint8_t*>(memory), static_cast<std::size_t>(status.st_size)};
}

}  // namespace

MappedFile::MappedFile(const std::string& file) : m_bytes(mapFile(file)) {}

MappedFile::MappedFile(MappedFile&& other) noexcept : m_bytes(std::exchange(other.m_bytes, {})) {}

MappedFile::~MappedFile()
{
    if (!m_bytes.empty()) ::munmap(const_cast<std::uint8_t*>(m_bytes.data()), m_bytes.size());
}

}  // namespace Oxa_1_1::platform
