#include "base/platform/system/error_text.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

Text systemErrorText(std::uint32_t code)
{
    constexpr DWORD FLAGS = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;
    static_assert(FLAGS == 0x1100);
    Char* buffer = nullptr;
    const DWORD length = FormatMessageW(FLAGS, nullptr, code, 0, reinterpret_cast<Char*>(&buffer), 0, nullptr);
    if (buffer == nullptr) return {};

    struct Release
    {
        Char* memory;
        ~Release() { LocalFree(memory); }
    } const release{buffer};
    return {buffer, length};
}

}  // namespace Oxa_1_1::platform
