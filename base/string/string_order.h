#pragma once

/// @file
/// The orders and hashes that containers of texts use. Comes with oxa_string.h.

#include <functional>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// The order of every map and set keyed by String: blind to case, NIL first. Transparent: a view or a literal is
/// looked up without making a String of it.
struct StringLess2
{
    /// Containers look up what they are given without converting it.
    using is_transparent = void;

    /// Whether `a` comes before `b`.
    /// @{
    [[nodiscard]] bool operator()(const String& a, const String& b) const noexcept
    {
        return a.compareIgnoreCase(b) < 0;
    }
    [[nodiscard]] bool operator()(const String& a, const Char* b) const noexcept { return a.compareIgnoreCase(b) < 0; }
    [[nodiscard]] bool operator()(const Char* a, const String& b) const noexcept { return b.compareIgnoreCase(a) > 0; }
    template <OtherText T>
    [[nodiscard]] bool operator()(const String& a, const T& b) const noexcept
    {
        return a.compareIgnoreCase(b) < 0;
    }
    template <OtherText T>
    [[nodiscard]] bool operator()(const T& a, const String& b) const noexcept
    {
        return b.compareIgnoreCase(a) > 0;
    }
    /// @}
};

/// The hash of unordered containers that are blind to case. Transparent, as StringLess2.
struct StringHashIgnoreCase
{
    /// Containers look up what they are given without converting it.
    using is_transparent = void;

    /// Of the text up to its first zero; 0 for NIL.
    /// @{
    [[nodiscard]] std::size_t operator()(const String& text) const noexcept
    {
        return text.isNil() ? 0 : ofPresent(text.view());
    }
    [[nodiscard]] std::size_t operator()(const Char* text) const noexcept
    {
        return text == nullptr ? 0 : ofPresent(text);
    }
    template <OtherText T>
    [[nodiscard]] std::size_t operator()(const T& text) const noexcept
    {
        if constexpr (PointedText<T>)
            return (*this)(static_cast<const Char*>(text.GetString()));
        else
            return ofPresent(text);
    }
    /// @}

   private:
    OXA_API static std::size_t ofPresent(TextView text) noexcept;
};

/// The equality that goes with it: as compareIgnoreCase().
struct StringEqualIgnoreCase
{
    /// Containers look up what they are given without converting it.
    using is_transparent = void;

    /// Whether both are the same but for case. NIL equals NIL only.
    /// @{
    [[nodiscard]] bool operator()(const String& a, const String& b) const noexcept
    {
        return a.compareIgnoreCase(b) == 0;
    }
    template <class T>
    requires(OtherText<T> || std::convertible_to<const T&, const Char*>) [[nodiscard]] bool operator()(
        const String& a, const T& b) const noexcept
    {
        return a.compareIgnoreCase(b) == 0;
    }
    template <class T>
    requires(OtherText<T> || std::convertible_to<const T&, const Char*>) [[nodiscard]] bool operator()(
        const T& a, const String& b) const noexcept
    {
        return b.compareIgnoreCase(a) == 0;
    }
    /// @}
};

}  // namespace Oxa_1_1

/// Equal texts, by ==, have equal hashes.
template <>
struct std::hash<Oxa_1_1::String>
{
    /// Of the text up to its first zero.
    [[nodiscard]] std::size_t operator()(const Oxa_1_1::String& text) const noexcept
    {
        if (text.isNil()) return 0;
        return std::hash<Oxa_1_1::TextView>{}(text.view().substr(0, text.view().find(Oxa_1_1::Char())));
    }
};
