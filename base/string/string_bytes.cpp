// Text from bytes and back: UTF-8 and code pages by their numbers.

#include "base/platform/system/code_page.h"
#include "base/string/detail/utf8_bytes.h"
#include "base/string/oxa_string.h"
#include "base/text/scan.h"
#include "base/text/utf8.h"

namespace Oxa_1_1
{

namespace
{

constexpr std::uint32_t ANSI_CODE_PAGE = 0;
constexpr Char REPLACEMENT = 0xFFFD;

/// Every code page has some meaning for this byte.
bool isKnown(std::uint32_t codePage) { return !platform::decodeCodePage(codePage, "a").empty(); }

/// Whether `text` is all that `bytes` say. Without a replacement character nothing was replaced.
bool isExact(std::string_view bytes, TextView text)
{
    return text::findUnit(text.data(), text.size(), REPLACEMENT) == text::NOT_FOUND || text::encodeUtf8(text) == bytes;
}

}  // namespace

Char unitOfAnsi(char c) noexcept
{
    const Text text = platform::decodeCodePage(ANSI_CODE_PAGE, {&c, 1});
    return text.empty() ? REPLACEMENT : text.front();
}

String String::fromUTF8(std::string_view bytes) { return text::decodeUtf8(bytes); }

String String::fromUTF8(const char* bytes) { return UTF8Interface(bytes); }

std::optional<String> String::fromUTF8Exactly(std::string_view bytes)
{
    Text text = text::decodeUtf8(bytes);
    if (!isExact(bytes, text)) return std::nullopt;
    return String(std::move(text));
}

std::optional<String> String::fromUTF8Exactly(std::u8string_view bytes)
{
    return fromUTF8Exactly(detail::asBytes(bytes));
}

std::optional<String> String::fromCodePage(std::string_view bytes, std::uint32_t codePage)
{
    Text text = bytes.empty() ? Text() : platform::decodeCodePage(codePage, bytes);
    if (text.empty() && !isKnown(codePage)) return std::nullopt;
    return String(std::move(text));
}

std::optional<std::string> String::toCodePage(std::uint32_t codePage) const
{
    std::string bytes = isEmpty() ? std::string() : platform::encodeCodePage(codePage, m_text);
    if (bytes.empty() && !isKnown(codePage)) return std::nullopt;
    return bytes;
}

Utf8Bytes utf8(const String& text) { return {text.stringUTF8()}; }

}  // namespace Oxa_1_1
