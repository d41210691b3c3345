#include "base/diagnostics/windows_error.h"

#include <cstdint>

#include "base/platform/system/error_text.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

String getWindowsError(unsigned long code)
{
    if (code == 0) return String::EMPTY;
    Text text = platform::systemErrorText(static_cast<std::uint32_t>(code));
    if (text.empty())
    {
        String number;
        number.printf_apply(OXA_TEXT("[0x%08x]"), static_cast<std::uint32_t>(code));
        return number;
    }
    text.erase(text.find_last_not_of(OXA_TEXT("\r\n")) + 1);
    return String(std::move(text));
}

String getWindowsError() { return getWindowsError(platform::lastError()); }

}  // namespace Oxa_1_1
