#pragma once

#include <string_view>

#include "base/char.h"
#include "base/platform/platform_types.h"

/// What goes with the last error of a thread: which operation has failed, and on which path.
namespace Oxa_1_1::platform
{

struct FailedStep
{
    /// Empty when nothing has failed. A literal.
    std::string_view operation;
    Text path;
    /// Empty for operations that take one path.
    Text target;
    DWORD code = 0;
};

/// Notes that the operation has failed with the last error. Success costs nothing, and failures no memory but that of
/// the longest path so far.
void noteFailedStep(std::string_view operation, TextView path, TextView target = {}) noexcept;
/// The same with another code, which becomes the last error. False, always.
bool failStep(DWORD code, std::string_view operation, TextView path, TextView target = {}) noexcept;
/// The last one of this thread; null when its end has begun.
FailedStep* failedStep() noexcept;

/// So that a later look at it tells of what has failed since.
void forgetFailedStep() noexcept;

/// The last error and the step that goes with it, to be restored after what is done because of it.
class KeptFailure
{
   public:
    KeptFailure() noexcept;
    /// False, always.
    bool restore() noexcept;
    /// Only the step, if there is one.
    void restoreStep() noexcept;

   private:
    DWORD m_error;
    FailedStep m_step;
};

}  // namespace Oxa_1_1::platform
