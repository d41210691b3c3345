#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace Oxa_1_1::platform
{

/// The bytes of a file, by its name in the ANSI code page; none when it cannot be read.
class MappedFile
{
   public:
    explicit MappedFile(const std::string& file);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    std::span<const std::uint8_t> bytes() const { return m_bytes; }

   private:
    std::span<const std::uint8_t> m_bytes;
};

}  // namespace Oxa_1_1::platform
