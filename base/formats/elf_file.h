#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/formats/bytes.h"

namespace Oxa_1_1::formats
{

/// A module's file. It may be cut short or nonsense; what does not fit counts as absent.
class ElfFile
{
   public:
    /// `bytes` must live as long.
    explicit ElfFile(std::span<const std::uint8_t> bytes);

    bool isValid() const { return m_isValid; }
    bool hasSection(std::string_view name) const;
    /// What a section holds; empty without one. What is packed in the file is unpacked to `unpacked`.
    Bytes section(std::string_view name, std::vector<std::byte>& unpacked) const;
    /// The identification of the build, in hexadecimal digits; empty when there is none.
    std::string buildId() const;

    /// The address that the first loaded byte is meant for.
    std::uint64_t firstAddress() const;

    /// Where the index of the unwind tables is: in the file, and by the address it is meant for. False without one.
    bool findUnwindIndex(std::uint64_t& offset, std::uint64_t& address) const;

    /// The function that an address, as it is meant, lies in; empty when none is known. `begin` is where it begins.
    std::string_view functionAt(std::uint64_t address, std::uint64_t& begin) const;

   private:
    template <class T>
    bool read(std::uint64_t offset, T& value) const;
    template <class Visit>
    void forEachSection(Visit visit) const;
    template <class Visit>
    void forEachSegment(Visit visit) const;
    std::string_view textAt(std::uint64_t offset) const;

    std::span<const std::uint8_t> m_bytes;
    bool m_isValid = false;
};

}  // namespace Oxa_1_1::formats
