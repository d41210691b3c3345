#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/export.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// A resource of a file. A type or name that is a number is written "#6".
struct ResourceInfo
{
    /// What it is found by; the language is a LANGID, 0 for none.
    /// @{
    String type;
    String name;
    unsigned short language = 0;
    /// @}
    /// In bytes.
    std::size_t size = 0;
};

/// The resources in the bytes of a program or library for Windows, by type, name and language. They are read on every
/// system; nothing is loaded. None when the bytes are no such file.
OXA_API std::optional<std::vector<ResourceInfo>> listResources(std::span<const std::byte> file);

}  // namespace Oxa_1_1
