#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/char.h"

/// What must be known of a code page for conversions by iconv to end as they do on Windows.
namespace Oxa_1_1::platform
{

std::string iconvName(std::uint32_t codePage);

/// Whether iconv joins letters with the marks behind them, for which it keeps letters back.
bool joinsMarks(std::uint32_t codePage);

/// What `byte`, which does not begin a character of the page, becomes.
Char unitOfUnassigned(std::uint32_t codePage, unsigned char byte);

/// The byte of such a unit.
std::optional<char> unassignedByte(std::uint32_t codePage, Char unit);

/// Whether iconv stopped because of the last bytes of `done`, although it counts them as converted.
bool failsBehind(std::uint32_t codePage, std::string_view done);

/// How many of `bytes`, which begin with no character of the page, are replaced as one.
std::size_t replacedLength(std::uint32_t codePage, std::string_view bytes);

}  // namespace Oxa_1_1::platform
