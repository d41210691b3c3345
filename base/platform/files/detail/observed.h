#pragma once

#include <string_view>
#include <type_traits>

#include "base/platform/files/file_observer.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform
{

/// Passes by the observer, who may make the operation fail, and goes to the system. The empty result of every operation
/// is its failure.
template <class Perform>
std::invoke_result_t<Perform> observed(std::string_view operation, TextView path, TextView target,
                                       const Perform& perform)
{
    FileObserver* const observer = fileObserver();
    if (observer == nullptr) return perform();
    const std::optional<DWORD> failure = observer->called(operation, path, target);
    if (!failure) return perform();
    setLastError(*failure);
    return std::invoke_result_t<Perform>();
}

template <class Perform>
std::invoke_result_t<Perform> observed(std::string_view operation, TextView path, const Perform& perform)
{
    return observed(operation, path, {}, perform);
}

}  // namespace Oxa_1_1::platform
