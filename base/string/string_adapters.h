#pragma once

/// @file
/// How a String takes texts, characters and values of other types than its own. Comes with oxa_string.h. All is inline,
/// so that no shared library exports what it uses of it.

#include <concepts>
#include <initializer_list>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

template <FrameworkText T>
inline String::String(const T& text)
{
    const Char* const buffer = text.GetString();
    if (buffer != nullptr) *this = String(TextView(buffer, static_cast<std::size_t>(text.GetLength())));
}

template <ForeignUnit C>
inline void String::write(const C* text, int length)
{
    if (text != nullptr) append(String(text, length).view());
}

template <OtherText T>
inline int String::compare(const T& text) const noexcept
{
    if constexpr (PointedText<T>)
        return compare(pointerTo(text));
    else
        return compareText(text);
}

template <OtherCharacter C>
inline int String::compare(C c) const noexcept
{
    return compareText(textUnitsOf(c).view());
}

template <OtherText T>
inline int String::compareIgnoreCase(const T& text) const noexcept
{
    if constexpr (PointedText<T>)
        return compareIgnoreCase(pointerTo(text));
    else
        return compareTextIgnoreCase(text);
}

template <OtherCharacter C>
inline int String::compareIgnoreCase(C c) const noexcept
{
    return compareTextIgnoreCase(textUnitsOf(c).view());
}

template <TruthObject T>
inline String& String::operator+=(const T& value)
{
    const bool isTrue = value;
    return *this += isTrue;
}

template <OtherCharacter C>
inline String& String::operator+=(C c)
{
    return append(c == 0 ? TextView() : textUnitsOf(c).view());
}

template <PointedText T>
inline String& String::operator+=(const T& text)
{
    return *this += pointerTo(text);
}

template <std::same_as<Text> T>
inline String& String::operator+=(const T& other)
{
    return m_present ? appendText(other) : append(other);
}

template <class... A>
inline String String::format(const String& pattern, const A&... arguments)
{
    const String texts[] = {String(), std::move(String() << arguments)...};
    return formatted(pattern, texts + 1, sizeof...(A));
}

template <PointedText T>
inline int String::find(const T& text, int start) const noexcept
{
    return find(pointerTo(text), start);
}

template <OtherCharacter C>
inline int String::find(C c, int start) const noexcept
{
    return findUnits(unitsOf(c).view(), start);
}

template <PointedText T>
inline int String::findLastOf(const T& text) const noexcept
{
    return findLastOf(pointerTo(text));
}

template <OtherCharacter C>
inline int String::findLastOf(C c, int start) const noexcept
{
    return findLastUnits(unitsOf(c).view(), start);
}

template <Character C>
inline bool String::contains(C c) const noexcept
{
    return view().find(unitsOf(c).view()) != TextView::npos;
}

template <Character C>
inline std::vector<String> String::split(C separator) const
{
    return splitAt(unitsOf(separator).view());
}

template <class Range>
inline String String::join(Range&& parts, const String& separator)
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
requires(OtherCharacter<A> || OtherCharacter<B>) inline int String::replace(A from, B to)
{
    return replaceUnits(unitsOf(from), unitsOf(to));
}

template <class A, class B>
requires(PointedText<A> || PointedText<B>) inline int String::replace(const A& from, const B& to)
{
    return replace(pointerTo(from), pointerTo(to));
}

template <PointedText T>
inline const Char* String::pointerTo(const T& text) noexcept
{
    return text.GetString();
}

}  // namespace Oxa_1_1
