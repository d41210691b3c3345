#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/char.h"

/// What Windows writes into links and junctions.
namespace Oxa_1_1::formats
{

/// Where a link or junction leads, as a path that programs write: of an absolute one without the prefix of the system's
/// own names. None for other marks, and for bytes that do not fit together.
std::optional<Text> readReparsePoint(std::span<const std::byte> bytes);

/// The bytes of a junction to an absolute path on a drive: "C:\folder". None when it is none, or too long.
std::optional<std::vector<std::byte>> makeJunction(TextView target);

}  // namespace Oxa_1_1::formats
