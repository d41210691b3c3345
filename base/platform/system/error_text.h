#pragma once

#include <cstdint>

#include "base/char.h"

/// Errors of the system. They are numbered as on Windows everywhere.
namespace Oxa_1_1::platform
{

/// The system's text for `code`, as it comes: it may end in line breaks. Empty when the system has none.
Text systemErrorText(std::uint32_t code);

}  // namespace Oxa_1_1::platform
