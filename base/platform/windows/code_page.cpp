#include "base/platform/code_page.h"

#include <limits>

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

namespace
{

/// The system counts in int.
bool fits(std::size_t size) { return size > 0 && size <= static_cast<std::size_t>(std::numeric_limits<int>::max()); }

}  // namespace

Text decodeCodePage(std::uint32_t codePage, std::string_view bytes)
{
    if (!fits(bytes.size())) return {};
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
    if (length <= 0) return {};

    Text text;
    text.resize_and_overwrite(static_cast<std::size_t>(length), [&](Char* buffer, std::size_t)
                              { return MultiByteToWideChar(codePage, 0, bytes.data(), size, buffer, length); });
    return text;
}

std::string encodeCodePage(std::uint32_t codePage, TextView text)
{
    if (!fits(text.size())) return {};
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return {};

    std::string bytes;
    bytes.resize_and_overwrite(
        static_cast<std::size_t>(size), [&](char* buffer, std::size_t)
        { return WideCharToMultiByte(codePage, 0, text.data(), length, buffer, size, nullptr, nullptr); });
    return bytes;
}

}  // namespace Oxa_1_1::platform
