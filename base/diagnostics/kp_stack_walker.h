#pragma once

#include "base/diagnostics/stack_walker.h"

namespace Oxa_1_1
{

/// A walker that prints nothing and counts frames.
class OXA_API KpStackWalker : public StackWalker
{
   public:
    /// All options, for the calling process or another.
    /// @{
    KpStackWalker();
    KpStackWalker(DWORD processId, HANDLE process);
    /// @}
    ~KpStackWalker() override;

    /// The number of frames that were counted, over all walks of this walker.
    int frameCount() const noexcept { return m_frameCount; }

    /// The number of the calling thread's frames, beginning with the caller of this function. No symbol is looked for,
    /// and no memory taken.
    int countFrames() const noexcept;

    /// The instance that the library itself counts with. Several threads may count with it at once.
    static KpStackWalker globalStackWalker;
    /// The depth from which output is indented: that of the outermost OutputDebugParenthesesScope.
    static int initialCallStackDepth;
    /// The debug depth when StackWalker's default output last wrote a line; 0 before that and without a scope.
    static int callStackDepthOfPreviousOutput;

   protected:
    /// Counts the frame.
    void OnCallstackEntry(CallstackEntryType eType, CallstackEntry& entry) override;
    /// Drops the text.
    void OnOutput(const char* text) override;

   private:
    int m_frameCount = 0;
};

}  // namespace Oxa_1_1
