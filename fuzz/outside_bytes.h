#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/char.h"
#include "fuzz/fuzz_input.h"

namespace Oxa_1_1::fuzz
{

/// The fuzzer's own copy, behind which a read is found.
inline std::span<const std::byte> outside(const std::uint8_t* data, std::size_t size)
{
    return std::as_bytes(std::span(data, size));
}

inline bool isPartOf(std::span<const std::byte> part, std::span<const std::byte> whole)
{
    if (part.empty()) return true;
    return part.data() >= whole.data() && part.size() <= whole.size() &&
           static_cast<std::size_t>(part.data() - whole.data()) <= whole.size() - part.size();
}

/// Takes units up to a zero or the end from the front of the bytes.
inline Text takeUnits(const std::uint8_t*& data, std::size_t& size)
{
    Text text;
    while (size > 1)
    {
        const auto unit = static_cast<Char>(data[0] | data[1] << 8);
        data += 2;
        size -= 2;
        if (unit == 0) break;
        text += unit;
    }
    return text;
}

}  // namespace Oxa_1_1::fuzz
