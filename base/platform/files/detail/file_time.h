#pragma once

#include <cstdint>

#include "base/platform/files/files.h"

/// Times of files, which count from 1601, and those of the system that count from 1970.
namespace Oxa_1_1::platform
{

inline constexpr std::int64_t SECONDS_FROM_1601_TO_1970 = 11644473600;
inline constexpr std::int64_t TICKS_IN_SECOND = 10'000'000;
inline constexpr long NANOSECONDS_IN_TICK = 100;

/// 0 for what lies before 1601.
constexpr FileTicks ticksOfUnixTime(std::int64_t seconds, long nanoseconds) noexcept
{
    const std::int64_t since1601 = seconds + SECONDS_FROM_1601_TO_1970;
    if (since1601 < 0) return 0;
    return static_cast<FileTicks>(since1601 * TICKS_IN_SECOND + nanoseconds / NANOSECONDS_IN_TICK);
}

/// Rounded down.
constexpr std::int64_t unixTimeOfTicks(FileTicks ticks) noexcept
{
    return static_cast<std::int64_t>(ticks / static_cast<FileTicks>(TICKS_IN_SECOND)) - SECONDS_FROM_1601_TO_1970;
}

}  // namespace Oxa_1_1::platform
