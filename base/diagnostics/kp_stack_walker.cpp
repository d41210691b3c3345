#include "base/diagnostics/kp_stack_walker.h"

#include <algorithm>
#include <array>

#include "base/platform/stack/call_stack.h"
#include "base/platform/system/system_info.h"

namespace Oxa_1_1
{

KpStackWalker KpStackWalker::globalStackWalker;
constinit int KpStackWalker::initialCallStackDepth = 0;
constinit int KpStackWalker::callStackDepthOfPreviousOutput = 0;

KpStackWalker::KpStackWalker()
    : StackWalker(AllOptions, nullptr, platform::currentProcessId(), platform::currentProcess())
{
}

KpStackWalker::KpStackWalker(DWORD processId, HANDLE process) : StackWalker(processId, process) {}

KpStackWalker::~KpStackWalker() = default;

int KpStackWalker::countFrames() const noexcept
{
    std::array<void*, FRAME_LIMIT> addresses;
    const std::size_t count = platform::captureStack(addresses, OXA_CURRENT_FRAME);
    // As in a walk with symbols, a frame that returns to itself is the last one.
    const auto end = addresses.begin() + static_cast<std::ptrdiff_t>(count);
    const auto repeated = std::adjacent_find(addresses.begin(), end);
    return static_cast<int>(repeated == end ? count : static_cast<std::size_t>(repeated - addresses.begin()) + 1);
}

void KpStackWalker::OnCallstackEntry(CallstackEntryType, CallstackEntry&) { ++m_frameCount; }

void KpStackWalker::OnOutput(const char*) {}

}  // namespace Oxa_1_1
