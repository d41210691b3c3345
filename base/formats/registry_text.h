#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/char.h"

/// The text form of the registry, as its editors export it.
namespace Oxa_1_1::formats
{

/// The numbers of the kinds of values that have a notation of their own.
enum RegistryType : std::uint32_t
{
    REGISTRY_TEXT = 1,
    REGISTRY_EXPANDABLE_TEXT = 2,
    REGISTRY_BINARY = 3,
    REGISTRY_NUMBER = 4,
    REGISTRY_TEXTS = 7,
};

struct RegistryValue
{
    std::uint32_t type = 0;
    /// As the registry holds it: texts in UTF-16 with their terminating zeros, numbers with the low byte first.
    std::vector<std::byte> data;
};

/// The value that the file gives to `valueName`, empty for the key's own, in `key`, such as
/// `HKEY_CURRENT_USER\Software`. Neither depends on case. Of several lines for it the last counts, and lines that
/// delete the value, the key or one above it count, too. Empty when there is none, and for a file of another kind.
/// Lines that are malformed are passed over.
std::optional<RegistryValue> findRegistryValue(std::span<const std::byte> file, TextView key, TextView valueName);

}  // namespace Oxa_1_1::formats
