#include "base/filesystem/detail/unique_name.h"

#include "base/platform/system/last_error.h"

#include <cstdint>
#include <random>

namespace Oxa_1_1::detail
{

String uniqueName(const String& prefix)
{
    std::random_device device;
    std::uint64_t number = std::uint64_t{device()} << 32 | device();
    Text name{TextView(prefix)};
    for (int digit = 0; digit < 16; ++digit, number >>= 4) name += OXA_TEXT("0123456789abcdef")[number & 0xF];
    return String(name + OXA_TEXT(".tmp"));
}

bool saysTaken(DWORD error) noexcept { return error == NAME_IS_TAKEN || error == platform::ALREADY_EXISTS; }

}  // namespace Oxa_1_1::detail
