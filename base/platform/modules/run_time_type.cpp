#include "base/platform/modules/run_time_type.h"

namespace Oxa_1_1::platform
{

#ifdef _MSC_VER

// Here the compiler writes nothing that could be asked.
bool hasRunTimeType(const void*) noexcept { return true; }

#else

bool hasRunTimeType(const void* object) noexcept
{
    // The type stands right in front of the first function.
    const void* const* const table = *static_cast<const void* const* const*>(object);
    return table[-1] != nullptr;
}

#endif

}  // namespace Oxa_1_1::platform
