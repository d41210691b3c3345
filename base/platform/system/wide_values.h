#pragma once

#include <cstdint>
#include <functional>

#include "base/platform/platform_types.h"

/// 64-bit numbers as the system's own types, which not everybody sees the inside of.
namespace Oxa_1_1::platform
{

void store(std::uint64_t number, ULARGE_INTEGER& value) noexcept;
void store(std::uint64_t number, FILETIME& value) noexcept;

/// What `query` stores; `number` is left alone when it gives false.
bool load(const std::function<bool(ULARGE_INTEGER&)>& query, std::uint64_t& number);

}  // namespace Oxa_1_1::platform
