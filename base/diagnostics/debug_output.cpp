#include "base/diagnostics/debug_output.h"

#include <atomic>

#include "base/diagnostics/kp_stack_walker.h"

namespace Oxa_1_1
{

namespace
{

constinit std::atomic<int> debugDepth{0};

}  // namespace

OutputDebugParenthesesScope::OutputDebugParenthesesScope() : m_formerDepth(debugDepth.load())
{
    // The innermost frame is this constructor's.
    const int depth = KpStackWalker::globalStackWalker.countFrames() - 1;
    if (m_formerDepth == 0) std::atomic_ref(KpStackWalker::initialCallStackDepth).store(depth);
    debugDepth.store(depth);
}

OutputDebugParenthesesScope::~OutputDebugParenthesesScope() { debugDepth.store(m_formerDepth); }

int OutputDebugParenthesesScope::depth() noexcept { return debugDepth.load(); }

}  // namespace Oxa_1_1
