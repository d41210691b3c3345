#pragma once

#include <optional>
#include <string_view>
#include <type_traits>

#include "base/platform/files/failed_step.h"
#include "base/platform/files/file_observer.h"
#include "base/platform/system/last_error.h"

/// Operations pass by the observer on their way to the system, and leave a note when they fail.
namespace Oxa_1_1::platform
{

/// The empty result of every operation is its failure.
template <class Result>
bool saysFailure(const Result& result)
{
    if constexpr (requires { result.empty(); })
        return result.empty();
    else if constexpr (std::is_enum_v<Result>)
        return result == Result();
    else
        return !result;
}

/// Of operations whose empty result is an answer like others, too.
template <class Perform>
std::invoke_result_t<Perform> asked(std::string_view operation, TextView path, TextView target, const Perform& perform)
{
    FileObserver* const observer = fileObserver();
    if (observer == nullptr) return perform();
    const std::optional<DWORD> failure = observer->called(operation, path, target);
    if (!failure) return perform();
    setLastError(*failure);
    return std::invoke_result_t<Perform>();
}

template <class Perform>
std::invoke_result_t<Perform> asked(std::string_view operation, TextView path, const Perform& perform)
{
    return asked(operation, path, {}, perform);
}

template <class Perform>
std::invoke_result_t<Perform> observed(std::string_view operation, TextView path, TextView target,
                                       const Perform& perform)
{
    std::invoke_result_t<Perform> result = asked(operation, path, target, perform);
    if (saysFailure(result)) noteFailedStep(operation, path, target);
    return result;
}

template <class Perform>
std::invoke_result_t<Perform> observed(std::string_view operation, TextView path, const Perform& perform)
{
    return observed(operation, path, {}, perform);
}

}  // namespace Oxa_1_1::platform
