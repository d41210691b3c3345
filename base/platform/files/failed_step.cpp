#include "base/platform/files/failed_step.h"

#include <exception>
#include <utility>

#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform
{

namespace
{

/// Objects that are destroyed after those of the thread use files, too.
thread_local constinit bool isGone = false;

struct StepOfThread
{
    StepOfThread() = default;
    StepOfThread(const StepOfThread&) = delete;
    StepOfThread& operator=(const StepOfThread&) = delete;
    ~StepOfThread() { isGone = true; }

    FailedStep step;
};

}  // namespace

FailedStep* failedStep() noexcept
{
    if (isGone) return nullptr;
    thread_local StepOfThread place;
    return &place.step;
}

void noteFailedStep(std::string_view operation, TextView path, TextView target) noexcept
{
    const DWORD code = lastError();
    FailedStep* const step = failedStep();
    if (step != nullptr)
    {
        step->operation = operation;
        step->code = code;
        try
        {
            step->target.assign(target);
            step->path.assign(path);
        }
        catch (const std::exception&)
        {
            // Without memory, the code must do.
            step->target.clear();
            step->path.clear();
        }
    }
    setLastError(code);
}

bool failStep(DWORD code, std::string_view operation, TextView path, TextView target) noexcept
{
    setLastError(code);
    noteFailedStep(operation, path, target);
    return false;
}

void forgetFailedStep() noexcept
{
    if (FailedStep* const step = failedStep()) step->operation = {};
}

KeptFailure::KeptFailure() noexcept : m_error(lastError())
{
    if (FailedStep* const step = failedStep()) m_step = std::exchange(*step, {});
}

bool KeptFailure::restore() noexcept
{
    if (FailedStep* const step = failedStep()) *step = std::move(m_step);
    setLastError(m_error);
    return false;
}

void KeptFailure::restoreStep() noexcept
{
    FailedStep* const step = m_step.operation.empty() ? nullptr : failedStep();
    if (step != nullptr) *step = std::move(m_step);
}

}  // namespace Oxa_1_1::platform
