#pragma once

#include <cstdint>

namespace Oxa_1_1::platform
{

/// The error code for an `errno` value: 0 for 0, and 31 ("general failure") for values without a counterpart.
std::uint32_t errorCodeOfErrno(int number) noexcept;

/// The `errno` value that says the same as an error code; 0 when there is none, and for 0.
int errnoOfErrorCode(std::uint32_t code) noexcept;

}  // namespace Oxa_1_1::platform
