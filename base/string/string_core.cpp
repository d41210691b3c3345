// Construction, conversion and comparison.

#include <algorithm>
#include <cstring>

#include "base/platform/system/code_page.h"
#include "base/string/detail/foreign_text.h"
#include "base/string/detail/utf8_bytes.h"
#include "base/string/oxa_string.h"
#include "base/text/scan.h"
#include "base/text/utf8.h"

namespace Oxa_1_1
{

namespace
{

constexpr std::uint32_t ANSI_CODE_PAGE = 0;

constexpr int sign(int difference) { return (difference > 0) - (difference < 0); }

std::size_t lengthOf(int length) { return static_cast<std::size_t>(std::max(length, 0)); }

/// The text up to its zero, at most `length` units. Never looks behind the zero.
template <class C>
std::basic_string_view<C> boundedView(const C* text, int length)
{
    const std::size_t limit = lengthOf(length);
    std::size_t count = 0;
    while (count < limit && text[count] != 0) ++count;
    return {text, count};
}

Text decodeAnsi(std::string_view bytes)
{
    return bytes.empty() ? Text() : platform::decodeCodePage(ANSI_CODE_PAGE, bytes);
}

/// NIL decodes to the empty text.
Text decode(const CodePageInterface& text)
{
    if (text.data() == nullptr || *text.data() == 0) return {};
    if (text.codePage() == UTF8Interface::CODE_PAGE) return text::decodeUtf8(text.data());
    return platform::decodeCodePage(text.codePage(), text.data());
}

/// How many units decide between two texts: those of the shorter one and the zero behind it, unless both end there.
std::size_t decisiveLength(TextView a, TextView b)
{
    return a.size() == b.size() ? a.size() : std::min(a.size(), b.size()) + 1;
}

/// Of texts that agree within the shorter one: the difference that what follows there makes.
int compareEnds(TextView a, TextView b)
{
    const std::size_t common = std::min(a.size(), b.size());
    if (text::findUnit(a.data(), common, 0) != text::NOT_FOUND) return 0;
    const bool aEnds = a.size() == common || a[common] == 0;
    const bool bEnds = b.size() == common || b[common] == 0;
    return bEnds - aEnds;
}

}  // namespace

OXA_CONSTINIT const String String::EMPTY{Present{}};
OXA_CONSTINIT const String String::NIL{};

String::String(const Char* text) : m_present(text != nullptr)
{
    if (text != nullptr) m_text = text;
}

String::String(const Char* text, int length) : m_present(text != nullptr)
{
    if (text != nullptr) m_text = boundedView(text, length);
}

String::String(Char c, int count) : m_text(lengthOf(count), c), m_present(true) {}

String::String(const char* text) : m_present(text != nullptr)
{
    if (text != nullptr) m_text = decodeAnsi(text);
}

String::String(const char* text, int length) : m_present(text != nullptr)
{
    if (text != nullptr) m_text = decodeAnsi(boundedView(text, length));
}

String::String(const std::string& text) : m_text(decodeAnsi(text)), m_present(true) {}

String::String(const CodePageInterface& text) : m_text(decode(text)), m_present(text.data() != nullptr) {}

String::String(const ForeignChar* text) : m_present(text != nullptr)
{
    if (text != nullptr) m_text = detail::fromForeign(text);
}

String::String(const ForeignChar* text, int length) : m_present(text != nullptr)
{
    if (text != nullptr) m_text = detail::fromForeign(boundedView(text, length));
}

String::String(std::basic_string_view<ForeignChar> text) : m_text(detail::fromForeign(text)), m_present(true) {}

String::String(const std::basic_string<ForeignChar>& text) : m_text(detail::fromForeign(text)), m_present(true) {}

String::String(const char8_t* text) : m_present(text != nullptr)
{
    if (text != nullptr) m_text = text::decodeUtf8(detail::asBytes(text));
}

String::String(const char8_t* text, int length) : m_present(text != nullptr)
{
    if (text != nullptr) m_text = text::decodeUtf8(detail::asBytes(boundedView(text, length)));
}

String::String(std::u8string_view text) : m_text(text::decodeUtf8(detail::asBytes(text))), m_present(true) {}

String String::repeated(TextView units, int count)
{
    Text text;
    text.reserve(units.size() * lengthOf(count));
    for (int i = 0; i < count; ++i) text.append(units);
    return text;
}

std::string String::stringAnsi() const
{
    return isEmpty() ? std::string() : platform::encodeCodePage(ANSI_CODE_PAGE, m_text);
}

std::string String::stringUTF8() const { return isEmpty() ? std::string() : text::encodeUtf8(m_text); }

void String::write(const Char* text, int length)
{
    if (text != nullptr) append(boundedView(text, length));
}

int String::compare(const String& other) const noexcept
{
    if (!m_present || !other.m_present) return m_present - other.m_present;
    return sign(text::compareUnits(m_text.c_str(), other.m_text.c_str(), decisiveLength(m_text, other.m_text)));
}

int String::compare(const Char* text) const noexcept
{
    if (!m_present || text == nullptr) return m_present - (text != nullptr);
    return compareText(text);
}

int String::compare(Char c) const noexcept { return compareText({&c, 1}); }

int String::compareText(TextView text) const noexcept
{
    if (!m_present) return -1;
    const int difference = text::compareUnits(m_text.data(), text.data(), std::min(m_text.size(), text.size()));
    return difference != 0 ? sign(difference) : compareEnds(m_text, text);
}

int String::compareIgnoreCase(const String& other) const noexcept
{
    if (!m_present || !other.m_present) return m_present - other.m_present;
    return text::compareUnitsIgnoreCase(m_text.c_str(), other.m_text.c_str(), decisiveLength(m_text, other.m_text));
}

int String::compareIgnoreCase(const Char* text) const noexcept
{
    if (!m_present || text == nullptr) return m_present - (text != nullptr);
    return compareTextIgnoreCase(text);
}

int String::compareIgnoreCase(Char c) const noexcept { return compareTextIgnoreCase({&c, 1}); }

int String::compareTextIgnoreCase(TextView text) const noexcept
{
    if (!m_present) return -1;
    const std::size_t common = std::min(m_text.size(), text.size());
    const int difference = text::compareUnitsIgnoreCase(m_text.data(), text.data(), common);
    return difference != 0 ? difference : compareEnds(m_text, text);
}

bool String::compareEquality(const String& other) const noexcept
{
    return m_present == other.m_present && m_text.size() == other.m_text.size() &&
           text::compareUnits(m_text.data(), other.m_text.data(), m_text.size()) == 0;
}

}  // namespace Oxa_1_1
