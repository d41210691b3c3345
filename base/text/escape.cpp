#include "base/text/escape.h"

#include "base/text/vector/kernels.h"

namespace Oxa_1_1::text
{

std::size_t escapedLength(TextView text, bool unicode) noexcept
{
    return textKernels().escapedLength(text.data(), text.size(), unicode);
}

void escape(TextView text, bool unicode, Char* out) noexcept
{
    textKernels().escape(text.data(), text.size(), unicode, out);
}

}  // namespace Oxa_1_1::text
