#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/string/oxa_string.h"

namespace Oxa_1_1::fuzz
{

/// Stops the run: a property does not hold for this input.
inline void require(bool holds)
{
    if (!holds) std::abort();
}

/// The bytes as they lie, without a zero behind them, so that a read past the end is found.
inline std::string bytes(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// The bytes as UTF-16 units of any kind: unpaired surrogates and zeros among them.
inline String units(const std::uint8_t* data, std::size_t size)
{
    Text text;
    for (std::size_t i = 0; i + 1 < size; i += 2) text += static_cast<Char>(data[i] | data[i + 1] << 8);
    return String(std::move(text));
}

}  // namespace Oxa_1_1::fuzz
