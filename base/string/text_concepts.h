#pragma once

/// @file
/// What a String takes in the place of texts, characters and truth values of its own types.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "base/char.h"
#include "base/export.h"

namespace Oxa_1_1
{

class String;

/// A standard text or view that a String is compared with where it lies, without a copy.
template <class T>
concept TextLike = !std::is_base_of_v<String, T> && !std::convertible_to<const T&, const Char*> &&
                   std::convertible_to<const T&, TextView>;

/// The host framework's own wide text class, known by its interface.
template <class T>
concept FrameworkText = requires(const T& text)
{
    {
        text.GetString()
        } -> std::convertible_to<const Char*>;
    {
        text.GetLength()
        } -> std::convertible_to<int>;
};

/// Such a text that turns into a pointer by itself, too: it counts as that pointer.
template <class T>
concept PointedText = FrameworkText<T> && !std::is_base_of_v<String, T> && std::convertible_to<const T&, const Char*>;

/// What a String is compared with without a copy.
template <class T>
concept OtherText = TextLike<T> || PointedText<T>;

/// The units of text that is converted: the other kind of wide characters, and UTF-8 by its type.
template <class C>
concept ForeignUnit = std::same_as<C, ForeignChar> || std::same_as<C, char8_t>;

/// A character of another type than Char. A plain char is one of the ANSI code page.
template <class C>
concept OtherCharacter = ForeignUnit<C> || std::same_as<C, char> || std::same_as<C, char32_t>;

/// A character of any type. The byte types are numbers.
template <class C>
concept Character = std::same_as<C, Char> || OtherCharacter<C>;

/// What is true or false by nature: bool, and classes that turn into bool by themselves, as std::atomic<bool>,
/// std::true_type and the elements of std::vector<bool> do. In braces neither numbers nor pointers become bool.
template <class T>
concept TruthObject = std::is_class_v<T> && !std::convertible_to<const T&, const Char*> &&
                      !std::convertible_to<const T&, TextView> && requires(const T& value, void (&take)(bool))
{
    take({value});
};

/// What is written into a text by its value, or as an object: numbers, characters, truth values, texts of other
/// classes.
template <class T>
concept AppendedValue = (std::is_arithmetic_v<T> && !std::same_as<T, Char>) ||
                        ((std::is_class_v<T> || std::is_enum_v<T>)&&!std::is_base_of_v<String, T> &&
                         requires(String & text, const T& value) { text += value; });

/// The units that a character is stored as: one, or a surrogate pair.
struct CharacterUnits
{
    /// The second one counts when `count` is 2.
    /// @{
    Char units[2];
    std::size_t count;
    /// @}

    /// Both as a text, valid as long as this lives.
    [[nodiscard]] TextView view() const noexcept { return {units, count}; }
};

/// The unit of a character of the ANSI code page.
[[nodiscard]] OXA_API Char unitOfAnsi(char c) noexcept;

/// The units of a character; U+FFFD for what is none in Unicode. A half of a surrogate pair stays what it is.
template <Character C>
[[nodiscard]] CharacterUnits unitsOf(C c) noexcept
{
    constexpr Char REPLACEMENT = 0xFFFD;
    if constexpr (std::same_as<C, char>)
        return {{static_cast<unsigned char>(c) < 0x80 ? static_cast<Char>(c) : unitOfAnsi(c), 0}, 1};
    const auto value = static_cast<std::uint32_t>(c);
    const bool isNone = std::same_as<C, char8_t> ? value >= 0x80 : value > 0x10FFFF;
    if (isNone) return {{REPLACEMENT, 0}, 1};
    if (value <= 0xFFFF) return {{static_cast<Char>(value), 0}, 1};
    return {{static_cast<Char>(0xD7C0 + (value >> 10)), static_cast<Char>(0xDC00 + (value & 0x3FF))}, 2};
}

/// The same for a character that becomes text: a half of a pair that comes alone in UTF-32 is U+FFFD.
template <Character C>
[[nodiscard]] CharacterUnits textUnitsOf(C c) noexcept
{
    const CharacterUnits units = unitsOf(c);
    const bool isHalf = sizeof(C) == 4 && units.count == 1 && (units.units[0] & 0xF800) == 0xD800;
    return isHalf ? CharacterUnits{{0xFFFD, 0}, 1} : units;
}

}  // namespace Oxa_1_1
