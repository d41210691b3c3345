#pragma once

/// The results of copies and of setting attributes.
namespace Oxa_1_1::detail
{

inline constexpr int SUCCESS = 0;
inline constexpr int NO_TARGET = 1;
inline constexpr int FAILED = 18;
inline constexpr int ABORTED = 24;
inline constexpr int NO_ATTRIBUTES = 168;
inline constexpr int DISK_FULL = 221;

}  // namespace Oxa_1_1::detail
