#include "base/platform/system/prompt.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

Answer askAbortRetryIgnore(const Char* text, const Char* caption, bool)
{
    constexpr UINT STYLE = MB_ABORTRETRYIGNORE | MB_ICONERROR | MB_TASKMODAL | MB_SETFOREGROUND;
    static_assert(STYLE == 0x12012);
    switch (MessageBoxW(nullptr, text, caption, STYLE))
    {
        case IDRETRY:
            return Answer::Retry;
        case IDIGNORE:
            return Answer::Ignore;
        default:
            return Answer::Abort;
    }
}

}  // namespace Oxa_1_1::platform
