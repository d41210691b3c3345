#pragma once

#include <array>
#include <cstdint>

#include "base/char.h"

/// Classification and case mapping of single UTF-16 units. They ask no locale and are the same on every system.
/// Halves of surrogate pairs are graphic and nothing else.
namespace Oxa_1_1::text
{

namespace detail
{

enum CharacterClass : std::uint8_t
{
    ALPHA = 1,
    DIGIT = 2,  // Decimal digits of any script.
    SPACE = 4,
    GRAPHIC = 8,
};

/// The classes of a unit beyond ASCII.
std::uint8_t characterClass(Char c) noexcept;
Char lowerBeyondAscii(Char c) noexcept;

constexpr bool isAscii(Char c) noexcept { return c < 0x80; }
constexpr bool isAsciiLetter(Char c) noexcept { return static_cast<Char>((c | 0x20) - 'a') < 26; }

}  // namespace detail

/// The ten ASCII digits only.
constexpr bool isDigit(Char c) noexcept { return static_cast<Char>(c - '0') < 10; }

inline bool isAlpha(Char c) noexcept
{
    if (detail::isAscii(c)) return detail::isAsciiLetter(c);
    return (detail::characterClass(c) & detail::ALPHA) != 0;
}

/// A letter, or one of the ten ASCII digits: those of other scripts are numbers to nobody here.
inline bool isAlphaNumeric(Char c) noexcept { return isAlpha(c) || isDigit(c); }

/// Neither blank nor control nor format character.
inline bool isGraphic(Char c) noexcept
{
    if (detail::isAscii(c)) return c > 0x20 && c < 0x7F;
    return (detail::characterClass(c) & detail::GRAPHIC) != 0;
}

/// White space, line breaks and no-break spaces included.
inline bool isSpace(Char c) noexcept
{
    if (detail::isAscii(c)) return c == 0x20 || (c >= 0x09 && c <= 0x0D);
    return (detail::characterClass(c) & detail::SPACE) != 0;
}

/// The simple lower-case mapping: the one case fold of the library.
inline Char toLower(Char c) noexcept
{
    if (detail::isAscii(c)) return static_cast<Char>(static_cast<Char>(c - 'A') < 26 ? c | 0x20 : c);
    return detail::lowerBeyondAscii(c);
}

}  // namespace Oxa_1_1::text
