#include "base/platform/text_escape.h"

#include "base/platform/vector/kernels.h"

namespace Oxa_1_1::platform
{

std::size_t escapedLength(TextView text, bool unicode) noexcept
{
    return textKernels().escapedLength(text.data(), text.size(), unicode);
}

void escape(TextView text, bool unicode, Char* out) noexcept
{
    textKernels().escape(text.data(), text.size(), unicode, out);
}

}  // namespace Oxa_1_1::platform
