#include "base/string/detail/foreign_text.h"

#include <cstdint>
#include <type_traits>

namespace Oxa_1_1::detail
{

namespace
{

constexpr std::uint32_t REPLACEMENT = 0xFFFD;

constexpr bool isScalarValue(std::uint32_t c) { return c < 0xD800 || (c > 0xDFFF && c <= 0x10FFFF); }

constexpr std::uint32_t scalarValue(ForeignChar unit)
{
    const auto c = static_cast<std::uint32_t>(static_cast<std::make_unsigned_t<ForeignChar>>(unit));
    return sizeof(ForeignChar) == sizeof(Char) || isScalarValue(c) ? c : REPLACEMENT;
}

}  // namespace

Text fromForeign(std::basic_string_view<ForeignChar> text)
{
    std::size_t pairs = 0;
    for (const ForeignChar unit : text) pairs += scalarValue(unit) > 0xFFFF;

    Text result;
    result.reserve(text.size() + pairs);
    for (const ForeignChar unit : text)
    {
        const std::uint32_t c = scalarValue(unit);
        if (c > 0xFFFF)
        {
            result += static_cast<Char>(0xD7C0 + (c >> 10));
            result += static_cast<Char>(0xDC00 + (c & 0x3FF));
            continue;
        }
        result += static_cast<Char>(c);
    }
    return result;
}

}  // namespace Oxa_1_1::detail
