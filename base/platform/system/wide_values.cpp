#include "base/platform/system/wide_values.h"

#ifdef _WIN32
#include "base/platform/windows/windows_api.h"
#endif

namespace Oxa_1_1::platform
{

void store(std::uint64_t number, ULARGE_INTEGER& value) noexcept { value.QuadPart = number; }

void store(std::uint64_t number, FILETIME& value) noexcept
{
    value.dwLowDateTime = static_cast<DWORD>(number);
    value.dwHighDateTime = static_cast<DWORD>(number >> 32);
}

bool load(const std::function<bool(ULARGE_INTEGER&)>& query, std::uint64_t& number)
{
    ULARGE_INTEGER value{};
    if (!query(value)) return false;
    number = value.QuadPart;
    return true;
}

}  // namespace Oxa_1_1::platform
