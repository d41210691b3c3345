#pragma once

/// @file
/// How a String takes texts, characters and values of other types than its own. Comes with oxa_string.h.

#include <concepts>
#include <initializer_list>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

template <FrameworkText T>
String::String(const T& text)
{
    const Char* const buffer = text.GetString();
    if (buffer != nullptr) *this = String(TextView(buffer, static_cast<std::size_t>(text.GetLength())));
}

template <ForeignUnit C>
void String::write(const C* text, int length)
{
    if (text != nullptr) append(String(text, length).view());
}

template <OtherText T>
int String::compare(const T& text) const noexcept
{
    if constexpr (PointedText<T>)
        return compare(pointerTo(text));
    else
        return compareText(text);
}

template <OtherCharacter C>
int String::compare(C c) const noexcept
{
    return compareText(textUnitsOf(c).view());
}

template <OtherText T>
int String::compareIgnoreCase(const T& text) const noexcept
{
    if constexpr (PointedText<T>)
        return compareIgnoreCase(pointerTo(text));
    else
        return compareTextIgnoreCase(text);
}

template <OtherCharacter C>
int String::compareIgnoreCase(C c) const noexcept
{
    return compareTextIgnoreCase(textUnitsOf(c).view());
}

template <TruthObject T>
String& String::operator+=(const T& value)
{
    const bool isTrue = value;
    return *this += isTrue;
}

template <OtherCharacter C>
String& String::operator+=(C c)
{
    return append(c == 0 ? TextView() : textUnitsOf(c).view());
}

template <PointedText T>
String& String::operator+=(const T& text)
{
    return *this += pointerTo(text);
}

template <std::same_as<Text> T>
String& String::operator+=(const T& other)
{
    return m_present ? appendText(other) : append(other);
}

template <class... A>
String String::format(const String& pattern, const A&... arguments)
{
    const String texts[] = {String(), std::move(String() << arguments)...};
    return formatted(pattern, texts + 1, sizeof...(A));
}

template <PointedText T>
int String::find(const T& text, int start) const noexcept
{
    return find(pointerTo(text), start);
}

template <OtherCharacter C>
int String::find(C c, int start) const noexcept
{
    return findUnits(unitsOf(c).view(), start);
}

template <PointedText T>
int String::findLastOf(const T& text) const noexcept
{
    return findLastOf(pointerTo(text));
}

template <OtherCharacter C>
int String::findLastOf(C c, int start) const noexcept
{
    return findLastUnits(unitsOf(c).view(), start);
}

template <Character C>
bool String::contains(C c) const noexcept
{
    return view().find(unitsOf(c).view()) != TextView::npos;
}

template <Character C>
std::vector<String> String::split(C separator) const
{
    return splitAt(unitsOf(separator).view());
}

template <class Range>
String String::join(Range&& parts, const String& separator)
{
    String result(Present{});
    bool isFirst = true;
    for (const auto& part : parts)
    {
        if (!std::exchange(isFirst, false)) result.append(separator.view());
        if constexpr (std::same_as<std::remove_cvref_t<decltype(part)>, String>)
            result.append(part.view());
        else
            result << part;
    }
    return result;
}

inline String String::join(std::initializer_list<String> parts, const String& separator)
{
    return join<std::initializer_list<String>&>(parts, separator);
}

template <Character A, Character B>
requires(OtherCharacter<A> || OtherCharacter<B>) int String::replace(A from, B to)
{
    return replaceUnits(unitsOf(from), unitsOf(to));
}

template <class A, class B>
requires(PointedText<A> || PointedText<B>) int String::replace(const A& from, const B& to)
{
    return replace(pointerTo(from), pointerTo(to));
}

template <PointedText T>
const Char* String::pointerTo(const T& text) noexcept
{
    return text.GetString();
}

}  // namespace Oxa_1_1
