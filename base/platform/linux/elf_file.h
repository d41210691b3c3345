#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Oxa_1_1::platform
{

/// A module's file, read where it lies. Files may be cut short or nonsense; what does not fit counts as absent.
class ElfFile
{
   public:
    explicit ElfFile(const std::string& file);
    ~ElfFile();
    ElfFile(const ElfFile&) = delete;
    ElfFile& operator=(const ElfFile&) = delete;

    bool isValid() const { return m_isValid; }
    bool hasSection(std::string_view name) const;
    /// The identification of the build, in hexadecimal digits; empty when there is none.
    std::string buildId() const;

    /// The bytes of the file; empty when it could not be read.
    std::span<const std::uint8_t> bytes() const { return m_bytes; }

   private:
    template <class T>
    bool read(std::uint64_t offset, T& value) const;
    template <class Visit>
    void forEachSection(Visit visit) const;
    std::string_view textAt(std::uint64_t offset) const;

    std::span<const std::uint8_t> m_bytes;
    bool m_isValid = false;
};

}  // namespace Oxa_1_1::platform
