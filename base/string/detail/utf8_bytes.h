#pragma once

#include <string_view>

namespace Oxa_1_1::detail
{

/// The same bytes, of the type that the conversions take.
inline std::string_view asBytes(std::u8string_view text)
{
    return {reinterpret_cast<const char*>(text.data()), text.size()};
}

}  // namespace Oxa_1_1::detail
