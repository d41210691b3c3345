#include "base/platform/system/error_text.h"

#include <cstring>
#include <string_view>

#include "base/platform/linux/system/error_code.h"

namespace Oxa_1_1::platform
{

Text systemErrorText(std::uint32_t code)
{
    const int number = errnoOfErrorCode(code);
    // The plain text, in ASCII, whatever the locale.
    const char* const text = number == 0 ? nullptr : strerrordesc_np(number);
    if (text == nullptr) return {};
    const std::string_view bytes(text);
    return {bytes.begin(), bytes.end()};
}

}  // namespace Oxa_1_1::platform
