#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/char.h"

/// The saved settings of the current user.
namespace Oxa_1_1::platform
{

/// The types of settings that are texts.
inline constexpr std::uint32_t TEXT_SETTING = 1;
inline constexpr std::uint32_t EXPANDABLE_TEXT_SETTING = 2;

struct Setting
{
    std::uint32_t type = 0;
    std::vector<std::byte> data;
};

/// The value under the key that is reached by `path`, a level at a time; none when a key or the value is missing or
/// the value is larger than `maxSize` bytes.
std::optional<Setting> readUserSetting(std::span<const TextView> path, TextView name, std::size_t maxSize);

}  // namespace Oxa_1_1::platform
