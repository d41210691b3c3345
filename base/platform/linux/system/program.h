#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace Oxa_1_1::platform
{

/// Runs a program with its arguments and without a shell; it is looked up on the path. Waits for its end no longer than
/// stated, and then leaves it running on its own: nobody has to collect it. False when it cannot be started, or ended
/// in that time with a failure. Its output goes nowhere.
bool runProgram(const std::vector<std::string>& command, std::chrono::milliseconds patience);

}  // namespace Oxa_1_1::platform
