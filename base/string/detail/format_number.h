#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/string/detail/format_directive.h"

namespace Oxa_1_1::detail
{

/// A number in parts, so that zeros which only fill need no memory: sign and base prefix, zeros, the digits up to
/// `split`, more zeros, the rest of the digits.
struct NumberText
{
    std::string prefix;
    std::int64_t leadingZeros = 0;
    std::string digits;
    std::size_t split = 0;
    std::int64_t trailingZeros = 0;
    /// Whether the zero flag may fill it up to the width.
    bool zeroPaddable = true;
};

/// An integer of d, i, o, u, x or X.
NumberText formatInteger(const Directive& directive, std::uint64_t magnitude, bool negative);

/// A floating-point number of f, e, g or a in either case.
template <class T>
NumberText formatFloating(const Directive& directive, T value);

}  // namespace Oxa_1_1::detail
