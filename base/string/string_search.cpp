// Searches for texts, characters and classes of characters.

#include "base/string/detail/number_scan.h"
#include "base/string/oxa_string.h"
#include "base/text/character.h"
#include "base/text/scan.h"

namespace Oxa_1_1
{

namespace
{

int toIndex(std::size_t position) { return position == TextView::npos ? -1 : static_cast<int>(position); }

bool isNumeric(Char c) { return detail::isSignedDigit(c) || c == '.' || c == '+' || (c | 0x20) == 'e'; }

}  // namespace

template <class Predicate>
int String::findUnit(int start, Predicate matches) const noexcept
{
    for (int i = start < 0 ? length() : start; i < length(); ++i)
        if (matches(m_text[static_cast<std::size_t>(i)])) return i;
    return -1;
}

int String::find(const Char* text, int start) const noexcept
{
    if (text == nullptr || *text == 0 || start < 0 || start >= length()) return -1;
    const TextView pattern = text;
    const TextView searched = countable().substr(static_cast<std::size_t>(start));
    const std::size_t hit = text::findText(searched.data(), searched.size(), pattern.data(), pattern.size());
    return hit == text::NOT_FOUND ? -1 : start + static_cast<int>(hit);
}

int String::find(Char c, int start) const noexcept
{
    if (start < 0 || start >= length()) return -1;
    const TextView searched = countable().substr(static_cast<std::size_t>(start));
    const std::size_t hit = text::findUnit(searched.data(), searched.size(), c);
    return hit == text::NOT_FOUND ? -1 : start + static_cast<int>(hit);
}

int String::findLastOf(const Char* text) const noexcept
{
    if (text == nullptr || *text == 0) return -1;
    const TextView searched = countable();
    return toIndex(searched.substr(0, text::findUnit(searched.data(), searched.size(), 0)).rfind(text));
}

int String::findLastOf(Char c, int start) const noexcept
{
    if (start < 0 || start >= length()) return -1;
    const int hit = toIndex(countable().rfind(c));
    return hit >= start ? hit : -1;
}

int String::findUnits(TextView units, int start) const noexcept
{
    if (start < 0 || start >= length()) return -1;
    return toIndex(countable().find(units, static_cast<std::size_t>(start)));
}

int String::findLastUnits(TextView units, int start) const noexcept
{
    if (start < 0 || start >= length()) return -1;
    const int hit = toIndex(countable().rfind(units));
    return hit >= start ? hit : -1;
}

int String::findAlpha(int start) const noexcept
{
    return findUnit(start, [](Char c) { return text::isAlpha(c); });
}

int String::findNonAlpha(int start) const noexcept
{
    return findUnit(start, [](Char c) { return !text::isAlpha(c); });
}

int String::findAlphaNum(int start) const noexcept { return findUnit(start, detail::isNumberStart); }

int String::findNonAlphaNum(int start) const noexcept
{
    return findUnit(start, [](Char c) { return !detail::isNumberStart(c); });
}

int String::findDigit(int start, Char except) const noexcept
{
    return findUnit(start, [except](Char c) { return text::isDigit(c) && c != except; });
}

int String::findNonDigit(int start) const noexcept
{
    return findUnit(start, [](Char c) { return !text::isDigit(c); });
}

int String::findSignedDigit(int start) const noexcept { return findUnit(start, detail::isSignedDigit); }

int String::findNonSignedDigit(int start) const noexcept
{
    return findUnit(start, [](Char c) { return !detail::isSignedDigit(c); });
}

int String::findNumeric(int start) const noexcept { return findUnit(start, isNumeric); }

int String::findWS(int start) const noexcept
{
    return findUnit(start, [](Char c) { return !text::isGraphic(c); });
}

int String::findNonWS(int start) const noexcept
{
    return findUnit(start, [](Char c) { return text::isGraphic(c); });
}

}  // namespace Oxa_1_1
