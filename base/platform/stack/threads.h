#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// The threads of this process, by the system's numbers.
namespace Oxa_1_1::platform
{

std::vector<std::uint32_t> listThreads();
std::uint32_t currentThreadId() noexcept;
bool isRunning(std::uint32_t thread) noexcept;

/// In the system's narrow encoding; empty when it has none.
std::string threadName(std::uint32_t thread);

/// Stores where another thread's frames return to, behind the instruction that it was about to execute, and returns
/// their number. The thread is stopped meanwhile. 0 when that fails, with the last error.
std::size_t captureThread(std::uint32_t thread, std::span<void*> addresses);

}  // namespace Oxa_1_1::platform
