#include "base/platform/system/code_page.h"

#include <limits>

#include "base/platform/windows/windows_api.h"
#include "base/text/resize_and_fill.h"
#include "base/text/utf8.h"

namespace Oxa_1_1::platform
{

namespace
{

/// The system counts in int.
bool fits(std::size_t size) { return size > 0 && size <= static_cast<std::size_t>(std::numeric_limits<int>::max()); }

/// The system replaces ill-formed UTF-8 in its own way, so that is not left to it.
bool isUtf8(std::uint32_t codePage) { return codePage == CP_UTF8 || (codePage == CP_ACP && GetACP() == CP_UTF8); }

}  // namespace

Text decodeCodePage(std::uint32_t codePage, std::string_view bytes)
{
    if (isUtf8(codePage)) return text::decodeUtf8(bytes);
    if (!fits(bytes.size())) return {};
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
    if (length <= 0) return {};

    Text text;
    int converted = 0;
    text::resizeAndFill(text, static_cast<std::size_t>(length),
                        [&](Char* buffer)
                        { converted = MultiByteToWideChar(codePage, 0, bytes.data(), size, buffer, length); });
    text.resize(static_cast<std::size_t>(converted));
    return text;
}

std::string encodeCodePage(std::uint32_t codePage, TextView text)
{
    if (isUtf8(codePage)) return text::encodeUtf8(text);
    if (!fits(text.size())) return {};
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return {};

    std::string bytes;
    int converted = 0;
    const auto convert = [&](char* buffer)
    { converted = WideCharToMultiByte(codePage, 0, text.data(), length, buffer, size, nullptr, nullptr); };
    text::resizeAndFill(bytes, static_cast<std::size_t>(size), convert);
    bytes.resize(static_cast<std::size_t>(converted));
    return bytes;
}

}  // namespace Oxa_1_1::platform
