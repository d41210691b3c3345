#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/formats/bytes.h"

namespace Oxa_1_1::formats
{

/// Where the parts of a program or library for Windows lie in its file. They know each other by their addresses in
/// memory.
class PeFile
{
   public:
    /// Empty for bytes that are no such file.
    static std::optional<PeFile> read(Bytes bytes);

    /// The address of the resource directory, 0 when there is none.
    std::uint32_t resources() const { return m_resources; }

    /// What lies in the file from `address` on, up to the end of its section. Empty when nothing does.
    Bytes from(std::uint32_t address) const;

   private:
    struct Section
    {
        std::uint32_t address;
        Bytes bytes;
    };

    bool readHeaders(Bytes bytes);
    void readResourceAddress(Bytes optionalHeader);
    void readSections(Bytes bytes, Bytes table);

    /// Ascending by address.
    std::vector<Section> m_sections;
    std::uint32_t m_resources = 0;
};

}  // namespace Oxa_1_1::formats
