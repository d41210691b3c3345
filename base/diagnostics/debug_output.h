#pragma once

#include "base/export.h"

namespace Oxa_1_1
{

/// Records the depth of the calling thread's stack for as long as it lives, so that debug output of the stack walker is
/// indented by it. The depth is one of the whole process: that of the scope made last. Scopes end in reverse order.
class OXA_API OutputDebugParenthesesScope
{
   public:
    OutputDebugParenthesesScope();
    ~OutputDebugParenthesesScope();
    OutputDebugParenthesesScope(const OutputDebugParenthesesScope&) = delete;
    OutputDebugParenthesesScope& operator=(const OutputDebugParenthesesScope&) = delete;

    /// The number of frames of the function that made the innermost scope, itself included; 0 without a scope.
    static int depth() noexcept;

   private:
    int m_formerDepth;
};

}  // namespace Oxa_1_1
